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

    function takeFocus() {
        library.takeFocus();
    }

    function enterList() {
        library.enterList();
    }

    KeyMonitor {
        sound: section.model.sound
        onEditingEnded: library.takeFocus()
    }
    LibraryPanel {
        id: library
        width: section.isNarrow ? Metrics.libraryWidthCompact : Metrics.libraryWidth
        height: parent.height
        library: section.model.library
        files: section.model.files
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
                anchors.fill: parent
                sound: section.model.sound
                actions: section.model.soundActions
                isNarrow: section.isNarrow
                onEditingEnded: library.takeFocus()
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
