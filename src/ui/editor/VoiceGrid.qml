pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// The voices, and what the chosen one does.
Column {
    id: control

    required property VoicesModel voices
    property bool isCompact: false

    spacing: Metrics.spaceS

    Accessible.role: Accessible.Grouping
    Accessible.name: "Voice"

    ArrowGroup {
        id: group
        members: grid
        columns: grid.columns
        width: parent.width
        height: grid.height
    }
    Grid {
        id: grid
        parent: group
        width: control.width
        columns: 3
        spacing: Metrics.spaceXs

        // Columns as wide as their longest names ask for.
        readonly property list<real> shares: control.isCompact ? [1 / 3, 1 / 3, 1 / 3] : [0.285, 0.34, 0.375]

        Repeater {
            model: control.voices

            Chip {
                id: chip
                required property int index
                required property string label
                required property string glyph
                required property string hint
                required property bool isCurrent

                width: Math.round((grid.width - 2 * grid.spacing) * grid.shares[index % 3])
                isStop: group.stop === chip || (!group.stop && isCurrent)
                onActiveFocusChanged: {
                    if (activeFocus)
                        group.stop = chip;
                }
                isCompact: control.isCompact
                isLeftAligned: true
                iconName: glyph
                text: label
                tip: control.isCompact ? label + ". " + hint : hint
                isPicked: isCurrent
                onPicked: control.voices.choose(index)
            }
        }
    }
    Label {
        objectName: "voiceHint"
        width: parent.width
        type: Metrics.caption
        wrapMode: Text.Wrap
        maximumLineCount: 2
        color: Theme.textSecondary
        text: control.voices.hint
    }
}
