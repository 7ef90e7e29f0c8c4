pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit

// Says that files may be dropped.
DashedFrame {
    id: invitation

    radius: Metrics.radiusControl
    color: Theme.accentInk
    fillColor: Theme.waveRange

    Accessible.role: Accessible.StaticText
    Accessible.name: label.text

    Column {
        anchors.centerIn: parent
        spacing: Metrics.spaceM

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Metrics.hitTarget
            height: Metrics.hitTarget
            name: "download"
            color: Theme.accentInk
        }
        Label {
            id: label
            type: Metrics.label
            color: Theme.accentInk
            text: "Drop to Add"
        }
    }
}
