pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library

// The list, what may be dropped, and how many sounds there are.
Panel {
    id: panel

    required property LibraryListModel library
    required property LibraryFiles files
    property real noticeHeight: 0 // what a notice at the list's foot takes; it covers no row
    readonly property alias noticePlace: noticePlace // its lower edge is the notice's
    property bool isInviting: false // files are over the section that would come in
    readonly property alias list: list

    signal renameWanted // of the open sound

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
        anchors.bottomMargin: foot.height + Metrics.spaceS + panel.noticeHeight
        focus: true
        opacity: panel.isInviting ? 0 : 1 // what may be dropped is all that matters then

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
            onRenameWanted: panel.renameWanted()
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
    OnDemand {
        isWanted: panel.isInviting

        DropInvitation {
            anchors.fill: found
        }
    }
    Item {
        id: noticePlace
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: foot.top
        anchors.bottomMargin: Metrics.spaceS
    }
    Item {
        id: foot
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        // What is beside the count stands below it where there is no room.
        readonly property bool hasNoteBelow: note.text !== "" && count.implicitWidth + note.implicitWidth + 3 * Metrics.spaceS > width

        height: Metrics.buttonSmall + Metrics.hairline + (hasNoteBelow ? Metrics.caption.line : 0)

        Hairline {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: -Metrics.spaceS
        }
        Label {
            id: count
            x: Metrics.spaceS
            y: Math.round((Metrics.buttonSmall + Metrics.spaceS + Metrics.hairline - height) / 2 + Metrics.hairline)
            width: Math.min(implicitWidth, parent.width - 2 * x)
            type: Metrics.caption
            color: Theme.textSecondary
            text: panel.library.soundCount + " sounds · saved on this Mac"

            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            id: note
            objectName: "footNote"
            x: foot.hasNoteBelow ? count.x : parent.width - width - Metrics.spaceS
            y: foot.hasNoteBelow ? count.y + count.height : count.y
            type: Metrics.captionStrong
            color: Theme.textSecondary
            text: panel.library.footNote

            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.ignored: text === ""
        }
    }
}
