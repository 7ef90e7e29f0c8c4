pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Window
import Tonequill.Test
import "../Look.js" as Look

TestCase {
    id: test
    name: "Window"
    when: windowShown

    property Main window: null

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
    }

    function init() {
        failOnWarning(/.?/);
    }
    function cleanup() {
        window.destroy();
        wait(0);
        Fixture.stop();
        Fixture.setDark(false);
    }

    function label(text) {
        return Look.label(window.contentItem, text);
    }

    function test_anEmptyLibrarySaysWhatToDo() {
        open(0);
        verify(label("Your Library Is Empty"));
        verify(label("Drop in a video or sound, or find free effects and save the ones you like."));
        verify(label("0 sounds · saved on this Mac"));
        mouseClick(label("Choose Files…"));
        compare(Fixture.filesAskedFor, 1);
        mouseClick(label("Find Free Sounds"));
        compare(window.model.section, WindowModel.Discover);
        verify(!label("Your Library Is Empty"));
    }

    function test_theEmptySurfaceTakesDropsToo() {
        open(0);
        const file = Fixture.sound("Bell.wav");
        verify(Fixture.dragOver(window, [file], 700, 600));
        verify(label("Drop to Add"));
        Fixture.drop(window, [file], 700, 600);
        tryCompare(window.model.library, "soundCount", 1);
        verify(!label("Your Library Is Empty"));
        tryVerify(() => label("Bell"));
    }

    function test_theSectionsSwitch() {
        open(1);
        const expected = [["librarySegment", "Library"], ["discoverSegment", "Discover"], ["studioSegment", "Studio"],
            ["createSegment", "Create with AI"]];
        for (let i = 3; i >= 0; --i) {
            const segment = findChild(window.contentItem, expected[i][0]);
            compare(segment.text, expected[i][1]);
            mouseClick(segment);
            compare(window.model.section, i);
            compare(segment.checked, true);
            compare(!!label("Nothing here yet."), i > 0);
        }
        for (const [key, section] of [[Qt.Key_3, WindowModel.Studio], [Qt.Key_4, WindowModel.Create],
                [Qt.Key_2, WindowModel.Discover], [Qt.Key_1, WindowModel.Library]]) {
            keyClick(key, Qt.ControlModifier);
            compare(window.model.section, section);
        }
        verify(Look.find(window.contentItem, item => Fixture.spoken(item) === "PageTabList: Section"));
    }

    function test_theArrowsMoveBetweenTheSections() {
        open(1);
        findChild(window.contentItem, "librarySegment").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        compare(window.model.section, WindowModel.Library);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Right);
        compare(window.model.section, WindowModel.Studio);
        const studio = findChild(window.contentItem, "studioSegment");
        verify(studio.activeFocus);
        verify(studio.visualFocus);
    }

    function test_addFilesAsksForFiles() {
        open(1);
        const button = findChild(window.contentItem, "addFilesButton");
        compare(button.text, "Add Files");
        compare(button.tip, "Add sounds or videos");
        mouseClick(button);
        compare(Fixture.filesAskedFor, 1);
        keyClick(Qt.Key_O, Qt.ControlModifier);
        compare(Fixture.filesAskedFor, 2);
    }

    function test_aNarrowWindowKeepsTheIconAndAShorterList() {
        open(1);
        const button = findChild(window.contentItem, "addFilesButton");
        const list = findChild(window.contentItem, "libraryList");
        verify(button.width > 90);
        const wide = list.width;
        window.width = 900;
        tryCompare(button, "width", Metrics.button);
        compare(wide - list.width, Metrics.libraryWidth - Metrics.libraryWidthCompact);
    }

    function test_theNoticeComesAndGoes() {
        open(1);
        const line = findChild(window.contentItem, "noticeLine");
        verify(!line.visible);
        Fixture.say("Added “Door Slam” to your library.", false);
        tryCompare(line, "opacity", 1);
        verify(label("Added “Door Slam” to your library."));
        verify(Look.find(line, item => item.name === "check"));
        const list = findChild(window.contentItem, "libraryList");
        fuzzyCompare(line.mapToItem(list, line.width / 2, 0).x, list.width / 2, 1);
        Fixture.advance(3499);
        compare(line.isShown, true);
        Fixture.advance(1);
        tryCompare(line, "visible", false);
    }

    function test_aNoticeCoversNoControl_data() {
        return [{ tag: "small window", width: 900, height: 600 }, { tag: "wide window", width: 1180, height: 740 }];
    }
    function test_aNoticeCoversNoControl(data) {
        open(60);
        window.width = data.width;
        window.height = data.height;
        const list = findChild(window.contentItem, "libraryList");
        tryVerify(() => list.mapToItem(null, 0, list.height).y > data.height - 80 && list.mapToItem(null, 0, list.height).y < data.height);
        const tall = list.height;
        Fixture.say("holiday is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V.", true);
        const line = findChild(window.contentItem, "noticeLine");
        tryCompare(line, "opacity", 1);
        tryVerify(() => list.height < tall);
        compare(Fixture.stopsUnder(line).join("; "), "");
        verify(line.mapToItem(list, 0, 0).y >= list.height);
        verify(Fixture.stopsUnder(list).length > 0, "the question is one");
        Fixture.advance(7000);
        tryCompare(list, "height", tall);
    }

    function test_f1ShowsEveryKey() {
        open(1);
        keyClick(Qt.Key_F1);
        tryVerify(() => label("Keys"));
        for (const words of ["Play or stop", "Start or end at the playhead or the cursor", "Ctrl+Return", "Quit"])
            verify(label(words), words);
        const close = Look.find(window.contentItem, item => item.objectName === "closeKeys");
        compare(Fixture.flaws(window).join("; "), "");
        verify(close.mapToItem(null, 0, 0).y < label("Everywhere").mapToItem(null, 0, 0).y);
        mouseClick(close);
        tryVerify(() => !label("Play or stop"));
    }

    // What stands over the window and is no sheet.
    function tips(text) {
        return Look.all(window.contentItem, item => item.text === text && item.visible && item.toString().startsWith("Label"));
    }

    function test_aTipGoesWithItsUseAndNoPanelLeavesOneBehind() {
        open(1);
        const settings = findChild(window.contentItem, "settingsButton");
        mouseMove(settings, 10, 10);
        tryVerify(() => tips("Ctrl+,").length === 1);
        mouseClick(settings, 10, 10);
        tryVerify(() => tips("Ctrl+,").length === 0);
        const close = () => Look.find(window.contentItem, item => item.objectName === "closeButton");
        tryVerify(() => close());
        wait(Metrics.motionPanel);
        mouseMove(close(), 10, 10);
        tryVerify(() => tips("Esc").length === 1);
        keyClick(Qt.Key_Escape);
        tryVerify(() => !close());
        compare(tips("Esc").length, 0);
        const folder = findChild(window.contentItem, "autoFolderButton");
        mouseMove(window.contentItem, 5, 300);
        folder.forceActiveFocus(Qt.TabFocusReason);
        tryVerify(() => tips(folder.tip).length === 1);
        keyClick(Qt.Key_Return);
        tryVerify(() => tips(folder.tip).length === 0);
        tryVerify(() => Look.find(window.contentItem, item => item.objectName === "autoFolderChooser"));
        keyClick(Qt.Key_Escape);
        tryVerify(() => folder.activeFocus);
        verify(folder.visualFocus);
        wait(Metrics.tooltipDelay + 200); // nothing tells when a tip would have come
        compare(tips(folder.tip).length, 0);
    }

    function test_aTabCanBePressedByAScreenReader() {
        open(1);
        verify(Fixture.press(findChild(window.contentItem, "studioSegment")));
        compare(window.model.section, WindowModel.Studio);
    }

    function test_anotherSectionHasItsNoticeAtTheWindowsFoot() {
        open(1);
        window.model.section = WindowModel.Studio;
        Fixture.say("Added “Door Slam” to your library.", false);
        tryVerify(() => findChild(window.contentItem, "noticeLine").opacity === 1);
        const line = findChild(window.contentItem, "noticeLine");
        compare(line.y + line.height, window.height - 24);
        fuzzyCompare(line.x + line.width / 2, window.width / 2, 1);
    }

    function test_anErrorStaysLongerAndWearsAWarning() {
        open(1);
        window.model.section = WindowModel.Studio;
        wait(0); // the library's goes
        const line = findChild(window.contentItem, "noticeLine");
        Fixture.say("holiday is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V.", true);
        tryCompare(line, "opacity", 1);
        verify(Look.find(line, item => item.name === "warning"));
        compare(line.width, Metrics.noticeWidth);
        verify(line.height > 50, "two lines");
        compare(Fixture.spoken(line).split(":")[0], "AlertMessage");
        Fixture.advance(6999);
        compare(line.isShown, true);
        Fixture.advance(1);
        tryCompare(line, "visible", false);
    }

    function test_everyStopOfTheTabKeyHasANameAndASize_data() {
        return [{ tag: "empty", count: 0, section: 0 }, { tag: "full", count: 3, section: 0 }, { tag: "other", count: 1, section: 2 }];
    }
    function test_everyStopOfTheTabKeyHasANameAndASize(data) {
        open(data.count);
        window.model.section = data.section;
        compare(Fixture.flaws(window), []);
        verify(Fixture.tabStops(window).length > 0);
    }

    function test_theTabKeyReachesEverything() {
        open(0);
        const stops = Fixture.tabStops(window);
        for (const stop of ["PageTab: Library, selected", "Button: Add Files", "List: Library", "Button: Choose Files…",
                "Button: Find Free Sounds"])
            verify(stops.includes(stop), stop + " is not in " + stops.join("; "));
        const reached = new Set();
        for (let i = 0; i < stops.length; ++i) {
            keyClick(Qt.Key_Tab);
            reached.add(Fixture.spoken(window.activeFocusItem));
        }
        compare(reached.size, stops.length);
    }

    function test_theThemeChangesUnderTheWindow() {
        open(2);
        const light = String(label("Sound 2").color);
        Fixture.setDark(true);
        verify(String(label("Sound 2").color) !== light);
    }
}
