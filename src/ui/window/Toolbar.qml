pragma ComponentBehavior: Bound
import QtQuick
import QtQml.Models
import Tonequill.Kit
import Tonequill.Library
import Tonequill.Window

// The sections on the left, what belongs to the section on the right.
Item {
    id: toolbar

    required property WindowModel model
    required property bool isNarrow
    property bool showsAutoFolder: false

    signal settingsWanted
    signal resultsWanted // the keyboard should go to what the search found
    signal searchLeft

    function search() {
        searchField.forceActiveFocus(Qt.ShortcutFocusReason);
        searchField.selectAll();
    }

    height: Metrics.toolbar

    SegmentedSwitch {
        x: Metrics.windowGap
        anchors.verticalCenter: parent.verticalCenter
        isOnToolbar: true
        name: "Section"

        Segment {
            objectName: "librarySegment"
            iconName: "library"
            text: "Library"
            keys: "Ctrl+1"
            checked: toolbar.model.section === WindowModel.Library
            onClicked: toolbar.model.section = WindowModel.Library
        }
        Segment {
            objectName: "discoverSegment"
            iconName: "discover"
            text: "Discover"
            keys: "Ctrl+2"
            checked: toolbar.model.section === WindowModel.Discover
            onClicked: toolbar.model.section = WindowModel.Discover
        }
        Segment {
            objectName: "studioSegment"
            iconName: "studio"
            text: "Studio"
            keys: "Ctrl+3"
            checked: toolbar.model.section === WindowModel.Studio
            onClicked: toolbar.model.section = WindowModel.Studio
        }
        Segment {
            objectName: "createSegment"
            iconName: "create"
            text: "Create with AI"
            keys: "Ctrl+4"
            checked: toolbar.model.section === WindowModel.Create
            onClicked: toolbar.model.section = WindowModel.Create
        }
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Metrics.windowGap
        anchors.verticalCenter: parent.verticalCenter
        spacing: Metrics.spaceS

        SearchField {
            id: searchField
            objectName: "searchField"
            visible: toolbar.model.section === WindowModel.Library
            width: toolbar.isNarrow ? Metrics.searchWidthCompact : Metrics.searchWidth
            fill: Theme.toolbarButton
            name: "Search sounds"
            keys: "Ctrl+F"
            onTextChanged: toolbar.model.library.query = text
            onResultsWanted: toolbar.resultsWanted()
            onAbandoned: toolbar.searchLeft()
        }
        ActionButton {
            objectName: "addFilesButton"
            visible: toolbar.model.section === WindowModel.Library
            kind: ActionButton.Toolbar
            isCompact: toolbar.isNarrow
            iconName: "plus"
            text: "Add Files"
            tip: "Add sounds or videos"
            keys: "Ctrl+O"
            onClicked: toolbar.model.files.choose()
        }
        ActionButton {
            id: autoFolderButton
            objectName: "autoFolderButton"
            kind: ActionButton.Toolbar
            isCompact: toolbar.isNarrow
            isLoading: toolbar.model.autoFolder.copyingText !== ""
            isOn: toolbar.showsAutoFolder
            iconName: "auto-folder"
            text: "Auto Folder"
            tip: "Keep a folder up to date with your sounds, ready for Final Cut, Premiere, DaVinci or CapCut"
            onClicked: {
                if (autoFolder.object)
                    (autoFolder.object as AutoFolderPanel).close();
                else
                    toolbar.showsAutoFolder = true;
            }

            Instantiator {
                id: autoFolder
                active: toolbar.showsAutoFolder

                delegate: AutoFolderPanel {
                    button: autoFolderButton
                    folder: toolbar.model.autoFolder
                    Component.onCompleted: open()
                    onClosed: toolbar.showsAutoFolder = false
                }
            }
        }
        IconButton {
            objectName: "settingsButton"
            anchors.verticalCenter: parent.verticalCenter
            iconName: "settings"
            text: "Settings"
            keys: "Ctrl+,"
            onClicked: toolbar.settingsWanted()
        }
    }
}
