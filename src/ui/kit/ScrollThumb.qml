import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// The scroll bar of a list: it lies over the list and shows itself while it is of use.
T.ScrollBar {
    id: control

    implicitWidth: Metrics.spaceS
    padding: Metrics.focusGap
    minimumSize: 0.08 // stays long enough to be taken hold of in a list of thousands
    hoverEnabled: true
    visible: size < 1

    contentItem: Rectangle {
        implicitWidth: Metrics.sliderTrack
        radius: width / 2
        color: Theme.control
        opacity: control.pressed || control.hovered ? 1 : control.active ? Metrics.mutedRegion : 0

        Behavior on opacity {
            Ease { duration: Metrics.motionStandard }
        }
    }
}
