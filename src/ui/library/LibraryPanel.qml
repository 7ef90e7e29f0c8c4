pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library

// The list, what it takes by dropping, and how many sounds there are.
Panel {
    id: panel

    required property LibraryListModel library
    required property LibraryFiles files

    function takeFocus() {
        list.forceActiveFocus(Qt.OtherFocusReason);
    }

    // The keyboard comes from the search.
    function enterList() {
        if (panel.library.nothingFound !== "")
            return; // there is nowhere to go
        panel.library.enter();
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
            text: panel.library.relatedHeading
        }
        LibraryList {
            id: list
            objectName: "libraryList"
            anchors.fill: parent
            anchors.topMargin: related.visible ? related.height + Metrics.spaceXs : 0
            model: panel.library
            focus: true
            onRowDragged: row => panel.files.dragRow(row, list)
        }
        OnDemand {
            isWanted: panel.library.nothingFound !== ""

            EmptyState {
                anchors.centerIn: found
                width: found.width - 2 * Metrics.spaceL
                iconName: "search"
                title: panel.library.nothingFound
                text: "Check the spelling or try a new search."
            }
        }
    }
    DropTarget {
        id: target
        anchors.bottomMargin: foot.height + Metrics.spaceS
        files: panel.files
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
            text: panel.library.soundCount + " sounds · saved on this Mac"
        }
    }
}
