import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// The scroll bar of what scrolls: it lies over it and shows itself while it is of
// use, or all the time if it is steady.
T.ScrollBar {
    id: control

    property bool isSteady: false

    implicitWidth: Metrics.spaceS
    implicitHeight: Metrics.spaceS
    padding: Metrics.focusGap
    minimumSize: 0.08 // stays long enough to be taken hold of in a list of thousands
    hoverEnabled: true
    visible: size < 1

    contentItem: Rectangle {
        implicitWidth: Metrics.sliderTrack
        implicitHeight: Metrics.sliderTrack
        radius: Math.min(width, height) / 2
        color: Theme.control
        opacity: control.pressed || control.hovered ? 1 : control.active || control.isSteady ? Metrics.mutedRegion : 0

        Behavior on opacity {
            Ease { duration: Metrics.motionStandard }
        }
    }
}
