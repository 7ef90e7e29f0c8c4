pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Window
import Tonequill.Test
import "../Look.js" as Look

TestCase {
    id: test
    name: "Library"
    when: windowShown

    property Main window: null
    property var list: null

    Component {
        id: component
        Main {
            model: Fixture.model
        }
    }

    function open(count) {
        Fixture.start(count);
        window = component.createObject(test);
        window.requestActivate();
        tryCompare(window, "active", true);
        list = findChild(window.contentItem, "libraryList");
        tryVerify(() => list.height > Metrics.row);
    }

    function init() {
        failOnWarning(/.?/);
    }
    function cleanup() {
        window.destroy();
        wait(0);
        Fixture.stop();
    }

    // The middle of a row, in the list.
    function clickRow(row, modifiers, button) {
        mouseClick(list, 100, row * Metrics.row + 20, button || Qt.LeftButton, modifiers || Qt.NoModifier);
    }

    function label(text) {
        return Look.label(window.contentItem, text);
    }

    function test_opensInItsSizeWithTheNewestSound() {
        open(3);
        compare(window.title, "Tonequill");
        compare(window.width, 1180);
        compare(window.height, 740);
        compare(window.minimumWidth, 900);
        compare(window.minimumHeight, 600);
        compare(Fixture.selected(), "Sound 1");
        verify(label("3 sounds · saved on this Mac"));
        verify(list.activeFocus);
    }

    function test_clicksSelect() {
        open(6);
        clickRow(2);
        compare(Fixture.selected(), "Sound 3");
        clickRow(4, Qt.ControlModifier);
        compare(Fixture.selected(), "Sound 3, Sound 5");
        clickRow(1);
        clickRow(3, Qt.ShiftModifier);
        compare(Fixture.selected(), "Sound 2, Sound 3, Sound 4");
        compare(Fixture.open(), "Sound 2");
    }

    function test_aPressOnOneOfSeveralKeepsThemForADrag() {
        open(6);
        clickRow(1);
        clickRow(3, Qt.ShiftModifier);
        const at = Qt.point(60, 2.5 * Metrics.row);
        mousePress(list, at.x, at.y);
        compare(Fixture.selected(), "Sound 2, Sound 3, Sound 4");
        mouseRelease(list, at.x, at.y);
        compare(Fixture.selected(), "Sound 3"); // it was a click after all
    }

    function test_keysSelect() {
        open(40);
        keyClick(Qt.Key_Down);
        compare(Fixture.selected(), "Sound 2");
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_Up);
        compare(Fixture.selected(), "Sound 1");
        keyClick(Qt.Key_Down, Qt.ShiftModifier);
        keyClick(Qt.Key_Down, Qt.ShiftModifier);
        compare(Fixture.selected(), "Sound 1, Sound 2, Sound 3");
        keyClick(Qt.Key_End);
        compare(Fixture.selected(), "Sound 40");
        keyClick(Qt.Key_Home);
        compare(Fixture.selected(), "Sound 1");
        keyClick(Qt.Key_PageDown);
        const page = list.model.currentRow;
        verify(page > 5, page);
        keyClick(Qt.Key_PageUp);
        compare(Fixture.selected(), "Sound 1");
    }

    function test_theKeysKeepTheirRowInView() {
        open(200);
        keyClick(Qt.Key_End);
        tryVerify(() => label("Sound 200"));
        keyClick(Qt.Key_Home);
        tryVerify(() => label("Sound 1"));
    }

    function test_ctrlASelectsAllAndDeleteDeletesAtOnce() {
        open(4);
        clickRow(3);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        compare(Fixture.selected(), "Sound 1, Sound 2, Sound 3, Sound 4");
        compare(Fixture.open(), "Sound 4");
        clickRow(1);
        keyClick(Qt.Key_Delete);
        compare(list.model.soundCount, 3);
        compare(Fixture.selected(), "Sound 1");
        verify(label("3 sounds · saved on this Mac"));
    }

    function test_deleteThatIsHeldDeletesOnce() {
        open(4);
        clickRow(1);
        Fixture.hold(window, Qt.Key_Delete, 20);
        compare(list.model.soundCount, 3);
    }

    function test_theRingShowsOnlyWithTheKeys() {
        open(3);
        const ring = () => Look.ofType(list, "FocusRing");
        clickRow(1);
        compare(ring(), null);
        keyClick(Qt.Key_Down);
        verify(ring());
        clickRow(0);
        compare(ring(), null);
    }

    function menuItem(text) {
        return Look.find(window.contentItem, each => each.iconName !== undefined && each.text === text && each.visible);
    }

    function test_theRowsMenuDeletesTheRow() {
        open(3);
        clickRow(2, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Delete"));
        verify(menuItem("Smart Name"));
        compare(Fixture.selected(), "Sound 1"); // the menu is the row's, and selects nothing
        mouseClick(menuItem("Delete"));
        compare(list.model.soundCount, 2);
        tryVerify(() => !menuItem("Delete"));
        keyClick(Qt.Key_End);
        compare(Fixture.selected(), "Sound 2");
    }

    function test_theMenuGoesWhenTheRowsMoveUnderIt() {
        open(3);
        clickRow(1, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Delete"));
        const item = menuItem("Delete");
        Fixture.deleteFirst();
        item.triggered(); // as by a press that was on its way
        tryVerify(() => !menuItem("Delete"));
        compare(list.model.soundCount, 2);
    }

    function test_theMenuOfOneOfSeveralMeansThemAll_data() {
        return [
            { tag: "right button", open: () => clickRow(1, Qt.NoModifier, Qt.RightButton) },
            { tag: "menu key", open: () => keyClick(Qt.Key_Menu) },
            { tag: "Shift+F10", open: () => keyClick(Qt.Key_F10, Qt.ShiftModifier) }
        ];
    }
    function test_theMenuOfOneOfSeveralMeansThemAll(data) {
        open(4);
        clickRow(0);
        clickRow(2, Qt.ShiftModifier);
        data.open();
        tryVerify(() => menuItem("Delete 3 Sounds"));
        verify(menuItem("Smart Names"));
        for (let i = 0; i < 8 && !menuItem("Delete 3 Sounds").highlighted; ++i)
            keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryCompare(list.model, "soundCount", 1);
        compare(Fixture.selected(), "Sound 4");
    }

    function test_escapeClosesTheMenuAndTheListHasTheKeysAgain() {
        open(3);
        keyClick(Qt.Key_Menu);
        tryVerify(() => menuItem("Delete"));
        keyClick(Qt.Key_Escape);
        tryVerify(() => !menuItem("Delete"));
        keyClick(Qt.Key_Down);
        compare(Fixture.selected(), "Sound 2");
    }

    function test_dropToAddShowsOverTheListForFilesOnly() {
        open(3);
        const at = list.mapToItem(null, 100, 200);
        const file = Fixture.sound("Bell.wav");
        verify(!Fixture.dragOver(window, ["https://example.org/a.wav"], at.x, at.y));
        verify(!label("Drop to Add"));
        Fixture.dragLeave(window);
        verify(Fixture.dragOver(window, [file], at.x, at.y));
        verify(label("Drop to Add"));
        Fixture.dragLeave(window);
        tryVerify(() => !label("Drop to Add"));
        verify(Fixture.dragOver(window, [file], at.x, at.y));
        Fixture.drop(window, [file], at.x, at.y);
        tryCompare(list.model, "soundCount", 4);
        verify(!label("Drop to Add"));
        tryVerify(() => Fixture.selected() === "Bell"); // once it is on the disk
        tryVerify(() => label("Found the best part. Check it, then add it."));
    }

    function test_theMenuShowsTheFileAndCopiesTheCredit() {
        open(3);
        Fixture.license(1, "CC BY 4.0", "Ann Author");
        clickRow(0, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Copy Credit"));
        verify(!menuItem("Copy Credit").enabled, "it needs none");
        keyClick(Qt.Key_Escape);
        tryVerify(() => !menuItem("Copy Credit"));
        clickRow(1, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Copy Credit"));
        mouseClick(menuItem("Copy Credit"));
        tryVerify(() => !menuItem("Copy Credit"));
        verify(Fixture.clipboard().includes("Ann Author"), Fixture.clipboard());
        tryVerify(() => label("Copied the credit."));
        clickRow(2, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Show in Finder"));
        mouseClick(menuItem("Show in Finder"));
        compare(Fixture.revealedFiles().length, 1);
        verify(Fixture.revealedFiles()[0].endsWith(".wav"));
    }

    function test_theMenuSavesWhatItMeans() {
        open(3);
        clickRow(0);
        clickRow(1, Qt.ShiftModifier);
        clickRow(1, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Save 2 Sounds"));
        mouseClick(menuItem("Save 2 Sounds"));
        tryVerify(() => window.model.noticeText.startsWith("Saved 2 sounds to "));
        tryVerify(() => !menuItem("Save 2 Sounds"));
        clickRow(2, Qt.NoModifier, Qt.RightButton);
        tryVerify(() => menuItem("Save to Desktop"));
    }

    function test_lettersFindNames() {
        open(4);
        ["Door", "Dog Bark", "Cat", "[Bracket"].forEach((name, row) => Fixture.rename(row, name));
        keyClick("d");
        compare(Fixture.open(), "Dog Bark");
        verify(Look.ofType(list, "FocusRing"));
        keyClick("o");
        keyClick("o");
        compare(Fixture.open(), "Door");
        Fixture.advance(1500);
        keyClick("[");
        compare(Fixture.open(), "[Bracket");
        Fixture.advance(1500);
        keyClick("c", Qt.ControlModifier);
        keyClick(Qt.Key_Escape);
        compare(Fixture.open(), "[Bracket");
    }

    function test_aNameThatDoesNotFitIsShownWholeUnderThePointer() {
        open(2);
        const name = "The very long name of a door that is slammed shut again and again in an old house";
        Fixture.rename(1, name);
        const tips = () => Look.all(window.contentItem.parent ?? window.contentItem, each => each.text === name && each.visible).length;
        tryVerify(() => label(name).truncated);
        const before = tips();
        mouseMove(list, 100, Metrics.row + 20);
        tryVerify(() => tips() === before + 1);
        mouseMove(list, 100, 20);
        tryVerify(() => tips() === before);
    }

    function test_aDropCountsAnywhereButOnAField_data() {
        return [
            { tag: "on the wave", at: () => findChild(window.contentItem, "well").mapToItem(null, 400, 100), takes: true },
            { tag: "on a button", at: () => findChild(window.contentItem, "saveButton").mapToItem(null, 10, 10), takes: true },
            { tag: "between the panels", at: () => Qt.point(list.mapToItem(null, list.width, 0).x + 14, 300), takes: true },
            { tag: "on the name", at: () => findChild(window.contentItem, "nameField").mapToItem(null, 20, 10), takes: false },
            { tag: "on the search", at: () => findChild(window.contentItem, "searchField").mapToItem(null, 60, 10), takes: false }
        ];
    }
    function test_aDropCountsAnywhereButOnAField(data) {
        open(3);
        tryVerify(() => findChild(window.contentItem, "well").visible);
        const file = Fixture.sound("Bell.wav");
        const at = data.at();
        compare(Fixture.dragOver(window, [file], at.x, at.y), data.takes);
        compare(!!label("Drop to Add"), data.takes);
        Fixture.drop(window, [file], at.x, at.y);
        verify(!label("Drop to Add"));
        if (data.takes) {
            tryCompare(list.model, "soundCount", 4);
            return;
        }
        const other = list.mapToItem(null, 100, 200); // what was refused comes with nothing that follows
        verify(Fixture.dragOver(window, [file], other.x, other.y));
        Fixture.dragLeave(window);
        compare(list.model.soundCount, 3);
    }

    function test_anotherSectionTakesNoDrop() {
        open(3);
        window.model.section = WindowModel.Studio;
        wait(0); // the library's goes
        verify(!Fixture.dragOver(window, [Fixture.sound("Bell.wav")], 600, 400));
    }

    function test_deletingInTheMiddleLeavesTheListWhereItIs_data() {
        return [
            { tag: "key", remove: () => keyClick(Qt.Key_Delete) },
            { tag: "menu", remove: view => {
                mouseClick(view, 100, 3 * Metrics.row + 20, Qt.RightButton);
                tryVerify(() => menuItem("Delete"));
                mouseClick(menuItem("Delete"));
                tryVerify(() => !menuItem("Delete"));
            } }
        ];
    }
    function test_deletingInTheMiddleLeavesTheListWhereItIs(data) {
        open(200);
        const view = Look.find(list, each => each.positionViewAtIndex !== undefined);
        view.contentY = 100 * Metrics.row;
        mouseClick(view, 100, 3 * Metrics.row + 20);
        compare(Fixture.selected(), "Sound 104");
        compare(view.contentY, 100 * Metrics.row);
        data.remove(view);
        tryCompare(list.model, "soundCount", 199);
        compare(Fixture.selected(), "Sound 1");
        wait(0);
        compare(view.contentY, 100 * Metrics.row);
        tryVerify(() => label("Sound 105"));
        keyClick(Qt.Key_Down); // whoever goes on with the keys goes with the view
        tryVerify(() => view.contentY <= Metrics.row);
        compare(Fixture.selected(), "Sound 2");
    }

    function test_theFootTellsHowManyAreMarked() {
        open(6);
        const note = findChild(window.contentItem, "footNote");
        compare(note.text, "");
        clickRow(1);
        clickRow(3, Qt.ShiftModifier);
        verify(label("6 sounds · saved on this Mac"));
        compare(note.text, "3 marked");
        keyClick(Qt.Key_F, Qt.ControlModifier);
        keyClick("5");
        compare(note.text, "1 shown");
        verify(label("6 sounds · saved on this Mac"));
        compare(Fixture.spoken(note), "StaticText: 1 shown");
        keyClick(Qt.Key_Escape);
        compare(note.text, "3 marked");
        window.width = 900; // there is no room beside the count
        const count = label("6 sounds · saved on this Mac");
        tryVerify(() => note.y >= count.y + count.height);
        verify(!note.truncated && !count.truncated);
        verify(count.mapToItem(list, 0, 0).y >= list.height);
    }

    function test_aFileThatIsNoSoundSaysSo() {
        open(1);
        const at = list.mapToItem(null, 100, 200);
        const file = Fixture.words("holiday.txt");
        verify(Fixture.dragOver(window, [file], at.x, at.y));
        Fixture.drop(window, [file], at.x, at.y);
        tryVerify(() => label("holiday is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."));
        compare(list.model.soundCount, 1);
    }

    function test_arabicStaysAtItsPlace() {
        open(2);
        const latin = label("Sound 2");
        const left = latin.mapToItem(null, 0, 0).x;
        Fixture.rename(1, "قهقهة قصيرة");
        const arabic = label("قهقهة قصيرة");
        verify(arabic);
        compare(arabic.mapToItem(null, 0, 0).x, left);
        compare(arabic.effectiveHorizontalAlignment, Text.AlignLeft);
        compare(arabic.height, Metrics.body.line);
    }

    function test_theOpenSoundIsShown() {
        open(2);
        tryVerify(() => label("0.25 s"));
        verify(label("short"));
        verify(label("hit"));
        compare(Look.find(window.contentItem, item => item.envelope !== undefined).endSeconds, 0.25);
    }

    function test_rowsTellAScreenReaderWhatTheyAre() {
        open(2);
        const row = Look.ofType(list, "SoundRow");
        compare(Fixture.spoken(row), "ListItem: Sound 1, 1.4 s, selected");
        compare(Fixture.spoken(list), "List: Library");
    }
}
