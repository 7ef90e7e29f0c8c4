import QtQuick
import Tonequill.Kit

// The time under the pointer.
Rectangle {
    property alias text: number.text

    implicitWidth: number.width + 2 * Metrics.spaceXs
    implicitHeight: Metrics.caption.line
    radius: Metrics.spaceXs
    color: Theme.popover

    NumberText {
        id: number
        anchors.centerIn: parent
        type: Metrics.caption
        color: Theme.textSecondary
    }
}
