pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library

// How the Auto Folder stands: a failure, how far the copying is, or how many
// sounds it holds. Nothing, and no height, without a folder.
Column {
    id: status

    required property AutoFolderView folder

    visible: folder.hasFolder || folder.problem !== ""

    InlineNotice {
        visible: status.folder.problem !== ""
        width: parent.width
        isWarning: true
        text: status.folder.problem
    }
    Item {
        visible: status.folder.problem === ""
        width: parent.width
        height: Metrics.body.line

        OnDemand {
            isWanted: status.folder.copyingText !== ""

            Spinner {
                y: (Metrics.body.line - height) / 2
            }
        }
        Icon {
            visible: status.folder.standText !== ""
            anchors.verticalCenter: parent.verticalCenter
            width: Metrics.iconSmall
            height: Metrics.iconSmall
            name: "check"
            color: Theme.success
        }
        Label {
            x: Metrics.iconSmall + Metrics.spaceS
            text: status.folder.copyingText + status.folder.standText
        }
        Label {
            visible: status.folder.copyingText === ""
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            type: Metrics.caption
            color: Theme.textSecondary
            text: status.folder.checkedText
        }
        ProgressBar {
            visible: status.folder.copyingText !== ""
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Metrics.meterWidth
            name: status.folder.copyingText
            value: status.folder.progress
        }
    }
}
