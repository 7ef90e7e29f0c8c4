pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library

// Takes dropped files and shows that it would. It lies over its parent.
DropArea {
    id: target

    required property LibraryFiles files
    property bool isInviting: false

    anchors.fill: parent
    onEntered: drag => {
        target.isInviting = target.files.invitesDrop(drag.urls);
        if (target.files.acceptsDrop(drag.urls))
            drag.accept(Qt.CopyAction);
        else
            drag.accepted = false;
    }
    onDropped: drop => {
        target.files.drop(drop.urls);
        drop.accept(Qt.CopyAction);
    }

    OnDemand {
        isWanted: target.containsDrag && target.isInviting

        DashedFrame {
            anchors.fill: target
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
    }
}
