import QtQuick
import Tonequill.Kit

// A wave that isn't there yet: its middle line, and what is going on.
Item {
    id: waiting

    required property string text
    property real progress: 0 // 0…1; shown once there is some

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.border
    }
    Rectangle {
        anchors.centerIn: parent
        width: row.implicitWidth + 2 * Metrics.spaceM
        height: Metrics.chip
        radius: Metrics.radiusControl
        color: Theme.popover

        Row {
            id: row
            anchors.centerIn: parent
            spacing: Metrics.spaceS

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
            }
            Label {
                color: Theme.textSecondary
                text: waiting.text
            }
            ProgressBar {
                visible: waiting.progress > 0
                anchors.verticalCenter: parent.verticalCenter
                width: Metrics.meterWidth
                name: waiting.text
                value: waiting.progress
            }
        }
    }
}
