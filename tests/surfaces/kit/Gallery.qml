pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library
import Tonequill.Test

// Every component in its states, to look at and to compare.
Item {
    id: gallery
    width: 1180
    height: 900

    WindowBackground {
        anchors.fill: parent
    }

    component Group: Panel {
        default property alias items: flow.data
        property string title: ""

        width: 570
        height: flow.height + 74
        Label { type: Metrics.label; text: parent.parent.title }
        Flow {
            id: flow
            y: 28
            width: parent.width
            spacing: 8
        }
    }

    Column {
        x: 12
        y: 12
        spacing: 12

        Group {
            title: "Buttons"
            ActionButton { kind: ActionButton.Accent; iconName: "plus"; text: "Add to Library" }
            ActionButton { kind: ActionButton.Accent; iconName: "plus"; text: "Add to Library"; enabled: false }
            ActionButton { kind: ActionButton.Accent; text: "Add to Library"; isLoading: true }
            ActionButton { objectName: "ring"; iconName: "plus"; text: "Add Files" }
            ActionButton { iconName: "plus"; text: "Add Files"; enabled: false }
            ActionButton { text: "Add Files"; isLoading: true }
            ActionButton { isSmall: true; text: "Show" }
            IconButton { iconName: "loop"; text: "Loop" }
            IconButton { iconName: "loop"; text: "Loop"; checkable: true; checked: true }
            IconButton { iconName: "loop"; text: "Loop"; enabled: false }
        }
        Group {
            title: "Fields"
            SearchField { name: "Search sounds"; width: 170 }
            SearchField { name: "Search sounds"; text: "door"; width: 170 }
            InputField { name: "Client"; text: "my client id"; hasError: true; width: 170 }
        }
        Group {
            title: "Switches, segments, chips"
            ToggleSwitch { text: "On"; checked: true }
            ToggleSwitch { text: "Off" }
            ToggleSwitch { text: "Disabled"; checked: true; enabled: false }
            SegmentedSwitch {
                Segment { text: "System" }
                Segment { text: "Light"; checked: true }
                Segment { text: "Dark" }
            }
            Chip { text: "Option 2"; detail: "1.09s" }
            Chip { text: "Best match · Slam"; detail: "1.38s"; iconName: "sparkle"; isPicked: true }
            Tag { text: "door" }
        }
        Group {
            title: "Sliders"
            ValueSlider { name: "Volume"; from: -12; to: 12; neutral: 0; value: 0; valueText: "+0 dB" }
            ValueSlider { name: "Volume"; from: -12; to: 12; neutral: 0; value: 6; valueText: "+6 dB" }
            ValueSlider { name: "Reverb"; from: 0; to: 100; value: 18; valueText: "18%" }
            ProgressBar { name: "Exporting"; value: 0.6 }
        }
    }
    Column {
        x: 594
        y: 12
        spacing: 12

        Group {
            title: "Rows"
            Repeater {
                model: ["Rest", "Selected", "Selected, focused", "Selected, list without focus", "kitchen take 3", "IMG_0042"]
                SoundRow {
                    required property string modelData
                    width: 536
                    height: 44
                    name: modelData
                    levels: Fixture.wave
                    subtitle: index === 4 ? "Adding… 42 %" : index === 5 ? "Listening…" : "1.4 s · whoosh"
                    credit: index === 0 ? "“Rest” by Mona (CC BY)" : ""
                    isIncoming: index === 4
                    isBeingNamed: index === 5
                    isSelected: index > 0 && index < 4
                    isListFocused: index < 3
                    hasRing: index === 2
                }
            }
        }
        Group {
            title: "Errors stay beside what failed"
            InlineNotice { width: 536; text: "Couldn't play this with the effects." }
            InlineNotice { width: 536; isWarning: true; text: "Tonequill can't open that folder any more. Choose it again." }
        }
        Group {
            title: "Waiting and empty"
            Card {
                isWell: true
                width: 536
                height: 70
                Waiting { anchors.fill: parent; text: "Listening…" }
            }
            EmptyState { iconName: "discover"; text: "The free sound search is busy right now. Wait a minute and try again." }
        }
        Row {
            spacing: 12
            NoticeLine { text: "Added “Door Slam” to your library."; isError: false }
            NoticeLine { text: "Naming 3"; isError: false; isBusy: true }
        }
    }
}
