pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Settings
import Tonequill.Window
import Tonequill.Test
import "../Look.js" as Look

TestCase {
    id: test
    name: "Settings"
    when: windowShown

    property Main window: null
    property var settings: null
    property var page: null

    Component {
        id: component
        Main {
            model: Fixture.model
        }
    }

    function init() {
        failOnWarning(/.?/);
        Fixture.start(3);
        window = component.createObject(test);
        window.requestActivate();
        tryCompare(window, "active", true);
        settings = window.model.settings;
    }
    function cleanup() {
        window.destroy();
        wait(0);
        Fixture.stop();
        Fixture.resetSettings();
    }

    function open() {
        keyClick(Qt.Key_Comma, Qt.ControlModifier);
        tryVerify(() => label("Show short effects only by default"));
        tryVerify(() => page = Look.ofType(window.contentItem, "SettingsPage"));
        tryCompare(page.parent.parent, "opacity", 1);
    }
    function label(text) {
        return Look.label(window.contentItem, text);
    }
    function named(text) {
        return Look.find(page.parent, item => item.visible && item.activeFocusOnTab && Fixture.spoken(item) === text);
    }

    function test_aNoticeIsSeenOverTheSettings() {
        open();
        Fixture.say("Copied 2 sounds to Movies.", false);
        const notice = Look.find(page.parent, item => item.objectName === "sheetNotice");
        tryCompare(notice, "opacity", 1);
        compare(notice.shownText, "Copied 2 sounds to Movies.");
        const below = findChild(window.contentItem, "noticeLine");
        verify(!below.visible, "once is enough");
        verify(page.mapToItem(null, 0, page.height).y <= notice.mapToItem(null, 0, 0).y, "it covers no row");
        keyClick(Qt.Key_Escape);
        tryCompare(below, "opacity", 1);
    }

    function test_allThatIsToBeSetIsThereInItsOrder() {
        open();
        const expected = ["Appearance", "Aurora", "Sunset", "Ocean", "Forest", "Rose", "Graphite", "Light or dark", "System", "Light",
            "Dark", "Search", "Show short effects only by default", "Hide sounds that need a credit",
            "CC BY and CC BY-SA sounds are free to use but must credit the creator. Most Arabic voice recordings are in this group.",
            "Saving", "Save to", "Desktop", "Final Cut Pro", "Found on this Mac", "Also add saved sounds to Final Cut Pro",
            "Sounds appear in a “Tonequill” event in your Final Cut library. You can also drag any sound straight into a timeline.",
            "Library", "Sounds", "3 saved, 0 searchable", "Location", "Show in Finder",
            "Sounds you add are saved on this Mac and work without internet."];
        const shown = Look.texts(page);
        compare(shown, expected);
    }

    function test_theKeyAndTheButtonOpenOneAndManyWaysClose_data() {
        return [
            { tag: "Escape", close: () => keyClick(Qt.Key_Escape) },
            { tag: "Ctrl+W", close: () => keyClick(Qt.Key_W, Qt.ControlModifier) },
            { tag: "button", close: () => mouseClick(named("Button: Close")) }
        ];
    }
    function test_theKeyAndTheButtonOpenOneAndManyWaysClose(data) {
        const button = findChild(window.contentItem, "settingsButton");
        compare(Fixture.spoken(button), "Button: Settings");
        mouseClick(button);
        tryVerify(() => label("Light or dark"));
        open(); // once more, with the key
        compare(Look.all(window.contentItem, item => item.toString().startsWith("SettingsPage_")).length, 1);
        data.close();
        tryVerify(() => !label("Light or dark"));
        compare(window.showsSettings, false);
        verify(window.activeFocusItem === button, "the keyboard goes back");
    }

    function test_itLiesOverTheMiddleAndScrollsWhereThereIsLittleRoom() {
        open();
        const sheet = page.parent.parent;
        compare(sheet.width, Metrics.settingsWidth);
        compare(Math.round(sheet.x + sheet.width / 2), window.width / 2);
        compare(Math.round(sheet.y + sheet.height / 2), window.height / 2);
        compare(page.contentHeight <= page.height, true);
        window.width = Metrics.windowMinWidth;
        window.height = Metrics.windowMinHeight;
        tryCompare(sheet, "height", Metrics.windowMinHeight - 2 * Metrics.windowGap);
        verify(page.contentHeight > page.height);
        named("Button: Show in Finder").forceActiveFocus(Qt.TabFocusReason);
        verify(page.contentY > 0);
        const shown = label("Show in Finder").mapToItem(page, 0, 0).y;
        verify(shown > 0 && shown < page.height);
        named("RadioButton: Aurora").forceActiveFocus(Qt.TabFocusReason);
        verify(label("Aurora").mapToItem(page, 0, 0).y > 0);
    }

    function test_theThemesAreOneStopOfTheTabKeyAndMoveWithTheArrows() {
        open();
        compare(Look.all(page, item => item.activeFocusOnTab && Fixture.spoken(item).startsWith("RadioButton")).length, 1);
        named("RadioButton: Aurora").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        compare(settings.themes.current, 0);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Down);
        compare(settings.themes.current, 2);
        compare(Fixture.setting("theme"), "ocean");
        const ocean = named("RadioButton: Ocean");
        verify(ocean.activeFocus);
        verify(Look.ofType(ocean, "FocusRing"));
        keyClick(Qt.Key_Up);
        compare(Fixture.setting("theme"), "sunset");
        mouseClick(label("Graphite"));
        compare(Fixture.setting("theme"), "graphite");
        compare(label("Graphite").font.weight, Metrics.heading.weight);
    }

    function test_lightOrDarkChangesTheWindowAtOnce() {
        open();
        verify(!Theme.isDark);
        mouseClick(label("Dark"));
        verify(Theme.isDark);
        compare(Fixture.setting("appearance"), "dark");
        keyClick(Qt.Key_Left);
        compare(Fixture.setting("appearance"), "light");
        verify(!Theme.isDark);
        keyClick(Qt.Key_Left);
        compare(Fixture.setting("appearance"), "system");
        compare(settings.appearance, 0);
    }

    function test_theSwitches_data() {
        return [
            { tag: "Show short effects only by default", key: "shortOnlyByDefault", before: true },
            { tag: "Hide sounds that need a credit", key: "hideCreditSounds", before: false },
            { tag: "Also add saved sounds to Final Cut Pro", key: "alsoFinalCut", before: true }
        ];
    }
    function test_theSwitches(data) {
        open();
        const toggle = named("CheckBox: " + data.tag);
        compare(toggle.checked, data.before);
        mouseClick(toggle);
        compare(Fixture.setting(data.key), String(!data.before));
        mouseClick(label(data.tag)); // its words
        compare(Fixture.setting(data.key), String(data.before));
        toggle.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        compare(Fixture.setting(data.key), String(!data.before));
        keyClick(Qt.Key_Return);
        compare(Fixture.setting(data.key), String(data.before));
        compare(toggle.checked, data.before);
        settings[data.key] = !data.before; // from elsewhere
        compare(toggle.checked, !data.before);
    }

    function test_withoutFinalCutItsSwitchRests() {
        Fixture.setFinalCut(false);
        open();
        verify(label("Not found"));
        verify(!label("Found on this Mac"));
        mouseClick(label("Also add saved sounds to Final Cut Pro"));
        compare(settings.alsoFinalCut, true);
        compare(named("CheckBox: Also add saved sounds to Final Cut Pro").enabled, false);
    }

    function test_saveToHasAMenu() {
        open();
        const button = named("Button: Save to: Desktop");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        tryVerify(() => label("Choose Folder…"));
        verify(label("Downloads"));
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryVerify(() => !label("Choose Folder…"));
        compare(settings.saveTo, SettingsView.Downloads);
        compare(button.text, "Downloads");
        tryVerify(() => button.activeFocus);
        mouseClick(button);
        tryVerify(() => label("Choose Folder…"));
        keyClick(Qt.Key_Escape);
        tryVerify(() => !label("Choose Folder…"));
        verify(label("Light or dark"), "Escape closes only the menu");
    }

    function test_theCountsAreLive() {
        open();
        Fixture.deleteFirst();
        verify(label("2 saved, 0 searchable"));
    }

    function test_showInFinderShowsTheLibrary() {
        open();
        mouseClick(label("Show in Finder"));
        compare(Fixture.shownFolders().length, 1);
        verify(Fixture.shownFolders()[0].endsWith("/Library"));
    }

    function test_theWindowBelowRests() {
        open();
        keyClick(Qt.Key_2, Qt.ControlModifier);
        compare(window.model.section, WindowModel.Library);
        keyClick(Qt.Key_O, Qt.ControlModifier);
        compare(Fixture.filesAskedFor, 0);
    }

    function test_aScreenReaderFindsTheGroupsAndWhatTheyTell() {
        open();
        const words = Look.all(page, item => item.visible).map(item => Fixture.spoken(item));
        for (const expected of ["Grouping: Appearance", "Grouping: Theme", "RadioButton: Rose", "PageTabList: Light or dark", "Grouping: Search",
                "Grouping: Saving", "StaticText: Final Cut Pro: Found on this Mac", "Grouping: Library", "StaticText: Sounds: 3 saved, 0 searchable",
                "StaticText: Sounds you add are saved on this Mac and work without internet."])
            verify(words.includes(expected), expected + " is not in " + words.filter(each => each !== "").join("; "));
    }

    function test_theTabKeyGoesRoundAndEverythingIsNamed() {
        open();
        compare(Fixture.flaws(window), []);
        const reached = [];
        for (let i = 0; i < 8; ++i) {
            keyClick(Qt.Key_Tab);
            reached.push(Fixture.spoken(window.activeFocusItem));
        }
        compare(reached, ["RadioButton: Aurora", "PageTab: Light, selected",
            "CheckBox: Show short effects only by default", "CheckBox: Hide sounds that need a credit", "Button: Save to: Desktop",
            "CheckBox: Also add saved sounds to Final Cut Pro", "Button: Show in Finder", "Button: Close"]);
    }
}
