pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library
import Tonequill.Editor
import Tonequill.Window

// The list beside the open sound.
FocusScope {
    id: section

    required property WindowModel model
    required property bool isNarrow
    property bool showsNotice: true

    signal renameWanted

    function takeFocus() {
        library.takeFocus();
    }

    function enterList() {
        library.enterList();
    }

    Shortcut {
        sequence: "Ctrl+S"
        onActivated: {
            keys.endEditing();
            section.model.soundActions.saveToDesktop();
        }
    }
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        autoRepeat: false
        onActivated: {
            keys.endEditing();
            section.model.soundActions.addToLibrary();
        }
    }
    Shortcut {
        sequence: "F2"
        onActivated: section.renameWanted()
    }
    KeyMonitor {
        id: keys
        sound: section.model.sound
        list: library.list
        onEditingEnded: library.takeFocus()
    }
    DropGround { // the whole window's, while this section is shown
        id: drops
        parent: section.Window.contentItem
        anchors.fill: parent
        files: section.model.files
    }
    LibraryPanel {
        id: library
        width: section.isNarrow ? Metrics.libraryWidthCompact : Metrics.libraryWidth
        height: parent.height
        library: section.model.library
        files: section.model.files
        isInviting: drops.isInviting
        noticeHeight: notice.isShown ? notice.height + Metrics.spaceS : 0
        onRenameWanted: section.renameWanted()
    }
    WindowNotice { // at the foot of the list, which makes room for it
        id: notice
        objectName: "noticeLine"
        parent: library.noticePlace
        anchors.bottomMargin: 0
        maximumWidth: library.noticePlace.width
        model: section.model
        isWanted: section.showsNotice
    }
    Panel {
        anchors.left: library.right
        anchors.leftMargin: Metrics.windowGap
        anchors.right: parent.right
        height: parent.height
        padding: section.model.library.isEmpty ? Metrics.spaceS : Metrics.spaceL
        topPadding: section.model.library.isEmpty ? Metrics.spaceS : Metrics.spaceM

        OnDemand {
            isWanted: section.model.library.isEmpty

            EmptyLibrary {
                anchors.fill: parent
                files: section.model.files
                onSoundsWanted: section.model.section = WindowModel.Discover
            }
        }
        OnDemand {
            isWanted: section.model.sound.isOpen

            SoundPanel {
                id: soundPanel
                anchors.fill: parent
                sound: section.model.sound
                actions: section.model.soundActions
                isNarrow: section.isNarrow
                onEditingEnded: library.takeFocus()

                Connections {
                    target: section
                    function onRenameWanted() {
                        soundPanel.rename();
                    }
                }
            }
        }
        OnDemand { // the first files are on their way
            isWanted: !section.model.library.isEmpty && !section.model.sound.isOpen

            Waiting {
                anchors.fill: parent
                text: "Adding…"
            }
        }
    }
}
