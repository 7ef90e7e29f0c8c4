pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Window
import Tonequill.Test
import "../Look.js" as Look

TestCase {
    id: test
    name: "AutoFolder"
    when: windowShown

    property Main window: null
    property var button: null

    Component {
        id: component
        Main {
            model: Fixture.model
        }
    }

    function init() {
        failOnWarning(/.?/);
        Fixture.start(2);
        window = component.createObject(test);
        window.requestActivate();
        tryCompare(window, "active", true);
        button = findChild(window.contentItem, "autoFolderButton");
    }
    function cleanup() {
        window.destroy();
        wait(0);
        Fixture.stop();
    }

    function label(text) {
        return Look.label(window.contentItem, text);
    }

    function sees(text) {
        tryVerify(() => label(text), 5000, text);
    }

    function keepSwitch() {
        return Look.find(window.contentItem, item => item.objectName === "autoFolderSwitch");
    }

    function chooser() {
        return Look.find(window.contentItem, item => item.objectName === "autoFolderChooser");
    }

    function test_theButtonOpensAndClosesThePanel() {
        compare(button.text, "Auto Folder");
        compare(button.tip, "Keep a folder up to date with your sounds, ready for Final Cut, Premiere, DaVinci or CapCut");
        mouseClick(button);
        sees("Keep this folder up to date");
        compare(button.isOn, true);
        mouseClick(button);
        tryVerify(() => !chooser());
        compare(button.isOn, false);
    }

    function test_aPressElsewhereClosesItAndTakesTheKeys() {
        mouseClick(button);
        tryVerify(() => chooser());
        const list = findChild(window.contentItem, "libraryList");
        mouseClick(list, 100, 20);
        tryVerify(() => !chooser());
        verify(list.activeFocus);
    }

    function test_escapeGivesTheKeysBackToTheButton() {
        mouseClick(button);
        tryVerify(() => chooser());
        keyClick(Qt.Key_Escape);
        tryVerify(() => !chooser());
        verify(button.activeFocus);
        verify(!button.visualFocus);
    }

    function test_itIsThereInEverySection() {
        for (let section = 3; section >= 0; --section) {
            window.model.section = section;
            verify(button.visible);
        }
    }

    function test_withoutAFolderOneCanOnlyBeChosen() {
        mouseClick(button);
        sees("Every sound you add to Tonequill is copied to a folder you choose, as a clean WAV with a good name. Open that "
            + "folder in your editor once, and new sounds are already there.");
        sees("No folder chosen");
        sees("Choose Folder…");
        sees("Sounds are never deleted from the folder, and a file you delete there is not copied again.");
        compare(keepSwitch().enabled, false);
        verify(!label("0 sounds in the folder"));
        tryVerify(() => chooser().activeFocus);
    }

    function test_withAFolderTheSwitchTurnsItOn() {
        Fixture.chooseAutoFolder("Tonequill Sounds");
        mouseClick(button);
        sees("Tonequill Sounds");
        sees("Change…");
        sees("0 sounds in the folder");
        verify(Look.find(window.contentItem, item => item.name === "check" && item.visible));
        compare(keepSwitch().checked, false);
        mouseClick(keepSwitch());
        compare(window.model.autoFolder.isOn, true);
        mouseClick(keepSwitch());
        compare(window.model.autoFolder.isOn, false);
    }

    function test_aFailureStandsThere() {
        Fixture.chooseAutoFolder("Tonequill Sounds");
        Fixture.failAutoFolder("Tonequill can't open that folder any more. Choose it again.");
        mouseClick(button);
        sees("Tonequill can't open that folder any more. Choose it again.");
        verify(!label("0 sounds in the folder"));
        verify(Look.find(window.contentItem, item => item.name === "warning" && item.visible));
    }

    function test_theKeysOpenUseAndCloseIt() {
        Fixture.chooseAutoFolder("Tonequill Sounds");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        tryVerify(() => keepSwitch() && keepSwitch().activeFocus);
        verify(keepSwitch().visualFocus);
        keyClick(Qt.Key_Space);
        compare(window.model.autoFolder.isOn, true);
        keyClick(Qt.Key_Tab);
        verify(chooser().activeFocus);
        keyClick(Qt.Key_Tab);
        verify(keepSwitch().activeFocus, "the keys stay in the panel");
        keyClick(Qt.Key_Escape);
        tryVerify(() => !chooser());
        verify(button.activeFocus);
        verify(button.visualFocus);
    }

    function test_aNarrowWindowKeepsTheIcon() {
        verify(button.width > 90);
        window.width = 900;
        tryCompare(button, "width", Metrics.button);
        mouseClick(button);
        tryVerify(() => chooser());
        verify(chooser().mapToItem(null, chooser().width, 0).x <= 900);
    }
}
