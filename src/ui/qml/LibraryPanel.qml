pragma ComponentBehavior: Bound
import QtQuick
import Tonequill

// The list, what it takes by dropping, and how many sounds there are.
Panel {
    id: panel

    required property WindowModel model

    function takeFocus() {
        list.forceActiveFocus(Qt.OtherFocusReason);
    }

    // The keyboard comes from the search.
    function enterList() {
        if (panel.model.library.nothingFound !== "")
            return; // there is nowhere to go
        panel.model.library.enter();
        list.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    padding: Metrics.spaceS

    FocusScope {
        id: found
        anchors.fill: parent
        anchors.bottomMargin: foot.height + Metrics.spaceS
        focus: true
        opacity: target.containsDrag ? 0 : 1 // the target says all that matters then

        Behavior on opacity {
            Ease { duration: Metrics.motionHover }
        }

        InlineNotice {
            id: related
            objectName: "relatedHeading"
            visible: text !== ""
            width: parent.width
            color: Theme.accentSoft
            ink: Theme.accentSoftText
            iconName: "sparkle"
            maximumLineCount: 4
            text: panel.model.library.relatedHeading
        }
        LibraryList {
            id: list
            objectName: "libraryList"
            anchors.fill: parent
            anchors.topMargin: related.visible ? related.height + Metrics.spaceXs : 0
            model: panel.model.library
            focus: true
            onRowDragged: row => panel.model.dragRow(row, list)
        }
        OnDemand {
            isWanted: panel.model.library.nothingFound !== ""

            EmptyState {
                anchors.centerIn: found
                width: found.width - 2 * Metrics.spaceL
                iconName: "search"
                title: panel.model.library.nothingFound
                text: "Check the spelling or try a new search."
            }
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
