pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Editor

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

            width: Math.floor((control.width - (control.effects.presetTexts.length + 1) * Metrics.focusGap) / control.effects.presetTexts.length)
            inset: control.inset
            horizontalPadding: 0
            text: modelData
            checked: control.effects.preset === index
            onClicked: control.effects.choosePreset(index)
        }
    }
}
