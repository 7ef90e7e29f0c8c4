import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// Everything that can be done to the sound before it is saved.
Item {
    id: panel

    required property EffectsView effects
    required property bool isNarrow
    readonly property real gap: isNarrow ? Metrics.spaceL : Metrics.spaceXl
    readonly property real columns: width - voices.width - 2 * gap

    readonly property real head: Metrics.buttonSmall + Metrics.focusGap

    // The hint has two lines where the grid is narrow.
    implicitHeight: head + (isNarrow ? Metrics.sliderRow * 4 + Metrics.spaceL : Metrics.sliderRow * 4)

    Label {
        height: Metrics.buttonSmall
        type: Metrics.label
        text: "Effects"
    }
    Row {
        anchors.right: parent.right
        y: (Metrics.buttonSmall - height) / 2
        spacing: Metrics.spaceS

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            width: Metrics.iconSmall
            height: Metrics.iconSmall
            name: "reverse"
            color: reverse.checked ? Theme.accentInk : Theme.textSecondary
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textSecondary
            text: "Reverse"
        }
        ToggleSwitch {
            id: reverse
            objectName: "reverseToggle"
            anchors.verticalCenter: parent.verticalCenter
            text: "Reverse"
            checked: panel.effects.reverse
            onToggled: panel.effects.reverse = checked
        }
        Item { // twice the spacing
            width: Metrics.hairline
            height: Metrics.hairline
        }
        ActionButton {
            objectName: "resetButton"
            anchors.verticalCenter: parent.verticalCenter
            isSmall: true
            enabled: !panel.effects.isNeutral
            text: "Reset"
            tip: "Reset all effects"
            onClicked: panel.effects.reset()
        }
    }
    Column {
        id: first
        y: panel.head
        width: Math.round(panel.columns * (panel.isNarrow ? 0.53 : 0.567))

        ValueSlider {
            objectName: "speedSlider"
            width: parent.width
            valueWidth: Metrics.valueWidth
            name: "Speed"
            from: -2
            to: 2
            neutral: 0
            value: panel.effects.speed
            valueText: panel.effects.speedText
            onMoved: value => panel.effects.speed = value
            onResetAsked: panel.effects.speed = 0
        }
        SpeedPresets {
            objectName: "presets"
            x: panel.isNarrow ? 0 : Metrics.spaceL * 4
            width: parent.width - x
            effects: panel.effects
        }
        ValueSlider {
            objectName: "gainSlider"
            width: parent.width
            valueWidth: Metrics.valueWidth
            name: "Volume"
            from: -24
            to: 12
            neutral: 0
            stepSize: 1
            value: panel.effects.gain
            valueText: panel.effects.gainText
            onMoved: value => panel.effects.gain = value
            onResetAsked: panel.effects.gain = 0
        }
        ValueSlider {
            objectName: "pitchSlider"
            width: parent.width
            valueWidth: Metrics.valueWidth
            name: "Pitch"
            from: -12
            to: 12
            neutral: 0
            stepSize: 1
            value: panel.effects.pitch
            valueText: panel.effects.pitchText
            onMoved: value => panel.effects.pitch = value
            onResetAsked: panel.effects.pitch = 0
        }
    }
    Column {
        anchors.left: first.right
        anchors.leftMargin: panel.gap
        y: panel.head
        width: panel.columns - first.width

        ValueSlider {
            objectName: "fadeInSlider"
            width: parent.width
            valueWidth: Metrics.valueWidthShort
            nameWidth: Metrics.spaceL * 4 + Metrics.spaceXs
            name: "Fade in"
            to: panel.effects.maxFade
            stepSize: 0.01
            value: panel.effects.fadeIn
            valueText: panel.effects.fadeInText
            onMoved: value => panel.effects.fadeIn = value
            onResetAsked: panel.effects.fadeIn = 0
        }
        ValueSlider {
            objectName: "fadeOutSlider"
            width: parent.width
            valueWidth: Metrics.valueWidthShort
            nameWidth: Metrics.spaceL * 4 + Metrics.spaceXs
            name: "Fade out"
            to: panel.effects.maxFade
            stepSize: 0.01
            value: panel.effects.fadeOut
            valueText: panel.effects.fadeOutText
            onMoved: value => panel.effects.fadeOut = value
            onResetAsked: panel.effects.fadeOut = 0
        }
        ValueSlider {
            objectName: "echoSlider"
            width: parent.width
            valueWidth: Metrics.valueWidthShort
            nameWidth: Metrics.spaceL * 4 + Metrics.spaceXs
            name: "Echo"
            to: 1
            stepSize: 0.01
            value: panel.effects.echo
            valueText: panel.effects.echoText
            onMoved: value => panel.effects.echo = value
            onResetAsked: panel.effects.echo = 0
        }
        ValueSlider {
            objectName: "reverbSlider"
            width: parent.width
            valueWidth: Metrics.valueWidthShort
            nameWidth: Metrics.spaceL * 4 + Metrics.spaceXs
            name: "Reverb"
            to: 1
            stepSize: 0.01
            value: panel.effects.reverb
            valueText: panel.effects.reverbText
            onMoved: value => panel.effects.reverb = value
            onResetAsked: panel.effects.reverb = 0
        }
    }
    VoiceGrid {
        id: voices
        objectName: "voices"
        anchors.right: parent.right
        y: panel.head
        width: panel.isNarrow ? Metrics.voiceWidthCompact : Metrics.voiceWidth
        isCompact: panel.isNarrow
        voices: panel.effects.voices
    }
}
