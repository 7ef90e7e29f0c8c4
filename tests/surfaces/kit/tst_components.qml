pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Test
import "../Look.js" as Look

Item {
    id: root
    width: 600
    height: 400

    Column {
        spacing: 8

        ActionButton { id: plain; text: "Plain"; iconName: "plus" }
        ActionButton { id: accent; kind: ActionButton.Accent; text: "Accent" }
        ActionButton { id: compact; isCompact: true; text: "Compact"; iconName: "plus" }
        IconButton { id: icon; iconName: "loop"; text: "Loop"; checkable: true }
        Chip { id: chip; text: "Option 2"; detail: "1.09s" }
        SegmentedSwitch {
            name: "Appearance"
            Segment { id: system; text: "System"; checked: true }
            Segment { id: light; text: "Light" }
        }
        ValueSlider { id: slider; name: "Volume"; from: -12; to: 12; neutral: 0; value: 0; valueText: "+" + value + " dB"; onMoved: to => value = to }
        ToggleSwitch { id: toggle; text: "Reverse" }
        InputField { id: field; name: "Client" }
        SearchField { id: search; name: "Search sounds" }
        ProgressBar { name: "Exporting"; value: 0.4 }
        InlineNotice { id: failure; width: 300; text: "Couldn't play this with the effects." }
    }

    Sheet {
        id: sheet
        title: "Share"
        contentItem: Label { text: "Words" }
    }

    SignalSpy { id: clicks; signalName: "clicked" }
    SignalSpy { id: moves; target: slider; signalName: "moved" }

    TestCase {
        name: "Components"
        when: windowShown

        function init() {
            failOnWarning(/.?/);
        }
        function initTestCase() {
            Fixture.start(0);
        }

        function ringOf(control) {
            return Look.ofType(control, "FocusRing");
        }

        function test_theRingShowsForTheKeyboardOnly_data() {
            return [plain, accent, compact, icon, chip, system, toggle].map(control => ({ tag: control.text, control: control }));
        }
        function test_theRingShowsForTheKeyboardOnly(data) {
            field.forceActiveFocus(Qt.OtherFocusReason);
            data.control.forceActiveFocus(Qt.MouseFocusReason);
            compare(ringOf(data.control), null);
            field.forceActiveFocus(Qt.OtherFocusReason);
            data.control.forceActiveFocus(Qt.TabFocusReason);
            verify(ringOf(data.control));
        }

        function test_everyControlHasARoleAndAName() {
            compare(Fixture.spoken(plain), "Button: Plain");
            compare(Fixture.spoken(compact), "Button: Compact");
            compare(Fixture.spoken(icon), "CheckBox: Loop");
            compare(Fixture.spoken(chip), "Button: Option 2, 1.09s");
            compare(Fixture.spoken(system), "PageTab: System, selected");
            compare(Fixture.spoken(toggle), "CheckBox: Reverse");
            compare(Fixture.spoken(field), "EditableText: Client");
            compare(Fixture.spoken(failure), "AlertMessage: Couldn't play this with the effects.");
            compare(Fixture.flaws(plain.Window.window), []);
        }

        function test_aDisabledAccentButtonIsAPlainOne() {
            verify(Qt.colorEqual(accent.background.color, Theme.accent));
            accent.enabled = false;
            tryVerify(() => Qt.colorEqual(accent.background.color, Theme.buttonFill));
            verify(Qt.colorEqual(accent.ink, Theme.textDisabled));
            accent.enabled = true;
        }

        function test_aLoadingButtonKeepsItsWordsAndShowsASpinner() {
            const width = plain.width;
            plain.isLoading = true;
            compare(plain.width, width);
            verify(Look.ofType(plain, "Spinner"));
            plain.isLoading = false;
        }

        function test_spaceAndReturnOfAButton() {
            clicks.target = plain;
            clicks.clear();
            plain.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            compare(clicks.count, 1);
        }

        function test_aKeyThatIsHeldIsOneWish() {
            clicks.target = plain;
            clicks.clear();
            plain.forceActiveFocus(Qt.TabFocusReason);
            Fixture.hold(root.Window.window, Qt.Key_Return, 20);
            compare(clicks.count, 1);
            Fixture.hold(root.Window.window, Qt.Key_Enter, 20);
            compare(clicks.count, 2);
        }

        function test_aTipComesWithTheKeyboardAndGoes() {
            icon.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => Look.find(root.Window.window.contentItem, item => item.text === "Loop" && item.visible && item !== icon));
            plain.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => !Look.find(root.Window.window.contentItem, item => item.text === "Loop" && item.visible && item !== icon));
        }

        function test_aSegmentIsChosenByClickAndByArrow() {
            mouseClick(light);
            verify(light.checked);
            verify(!system.checked);
            light.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Left);
            verify(system.checked);
        }

        function test_aSliderIsQuietUntilItIsMoved() {
            slider.value = 0;
            verify(!slider.isChanged);
            const handle = Look.find(slider, item => item.handle !== undefined);
            handle.forceActiveFocus(Qt.TabFocusReason);
            moves.clear();
            keyClick(Qt.Key_Right);
            verify(slider.isChanged);
            compare(moves.count, 1);
        }

        function test_escapeEmptiesTheSearch() {
            search.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_D);
            compare(search.text, "d");
            keyClick(Qt.Key_Escape);
            compare(search.text, "");
        }

        function test_aSheetOpensOverTheWindowAndEscapeClosesIt() {
            sheet.open();
            tryCompare(sheet, "opened", true);
            compare(Math.round(sheet.width), Metrics.sheetWidth);
            keyClick(Qt.Key_Escape);
            tryCompare(sheet, "opened", false);
        }
    }
}
