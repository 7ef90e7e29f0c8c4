import QtQuick
import Tonequill

// The list, what it takes by dropping, and how many sounds there are.
Panel {
    id: panel

    required property WindowModel model

    function takeFocus() {
        list.forceActiveFocus(Qt.OtherFocusReason);
    }

    padding: Metrics.spaceS

    LibraryList {
        id: list
        objectName: "libraryList"
        anchors.fill: parent
        anchors.bottomMargin: foot.height + Metrics.spaceS
        model: panel.model.library
        focus: true
        onRowDragged: row => panel.model.dragRow(row, list)
        opacity: target.containsDrag ? 0 : 1 // the target says all that matters then

        Behavior on opacity {
            Ease { duration: Metrics.motionHover }
        }
    }
    DropTarget {
        id: target
        anchors.bottomMargin: foot.height + Metrics.spaceS
        model: panel.model
    }
    Item {
        id: foot
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: Metrics.buttonSmall + Metrics.hairline

        Hairline {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: -Metrics.spaceS
        }
        Label {
            x: Metrics.spaceS
            y: Math.round((parent.height + Metrics.spaceS - height) / 2 + Metrics.hairline)
            type: Metrics.caption
            color: Theme.textSecondary
            text: panel.model.library.soundCount + " sounds · saved on this Mac"
        }
    }
}
