pragma ComponentBehavior: Bound
import QtQuick
import Tonequill

// The speeds that are asked for most.
SegmentedSwitch {
    id: control

    required property EffectsView effects

    isSmall: true
    name: "Speed presets"

    Repeater {
        model: control.effects.presetTexts

        Segment {
            required property int index
            required property string modelData

            // What the five leave of the switch's width is shared between them.
            width: implicitWidth + Math.floor((control.width - control.implicitWidth) / 5)
            inset: control.inset
            horizontalPadding: Metrics.spaceXs
            text: modelData
            checked: control.effects.preset === index
            onClicked: control.effects.choosePreset(index)
        }
    }
}
