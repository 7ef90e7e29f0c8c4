pragma ComponentBehavior: Bound
import QtQuick
import QtQml.Models
import Tonequill.Kit
import Tonequill.Settings
import Tonequill.Window

// The window: the toolbar on the bare ground, the section below, the notice over all.
Window {
    id: window

    required property WindowModel model
    readonly property bool isNarrow: width < Metrics.narrowBelow
    property bool showsSettings: false
    property bool showsKeys: false

    title: "Tonequill"
    width: Metrics.windowWidth
    height: Metrics.windowHeight
    minimumWidth: Metrics.windowMinWidth
    minimumHeight: Metrics.windowMinHeight
    visible: true
    color: Theme.isDark ? "black" : "white"

    Shortcut {
        sequence: "Ctrl+1"
        onActivated: window.model.section = WindowModel.Library
    }
    Shortcut {
        sequence: "Ctrl+2"
        onActivated: window.model.section = WindowModel.Discover
    }
    Shortcut {
        sequence: "Ctrl+3"
        onActivated: window.model.section = WindowModel.Studio
    }
    Shortcut {
        sequence: "Ctrl+4"
        onActivated: window.model.section = WindowModel.Create
    }
    Shortcut {
        sequence: "Ctrl+F"
        enabled: !window.showsSettings && window.model.section === WindowModel.Library
        onActivated: toolbar.search()
    }
    Shortcut {
        sequence: "Ctrl+O"
        onActivated: window.model.files.choose()
    }
    Shortcut {
        sequence: "Ctrl+,"
        onActivated: window.showsSettings = true
    }
    Shortcut {
        sequence: "F1"
        onActivated: window.showsKeys = true
    }
    Shortcut {
        sequence: "Ctrl+Q"
        context: Qt.ApplicationShortcut // a sheet that is open keeps the others off
        onActivated: Qt.quit()
    }

    WindowBackground {
        anchors.fill: parent
    }
    Toolbar {
        id: toolbar
        width: parent.width
        model: window.model
        isNarrow: window.isNarrow
        onSettingsWanted: window.showsSettings = true
    }
    FocusScope {
        anchors.top: toolbar.bottom
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Metrics.windowGap
        anchors.topMargin: 0
        focus: true

        OnDemand {
            isWanted: window.model.section === WindowModel.Library

            LibrarySection {
                id: librarySection
                anchors.fill: parent
                focus: true
                model: window.model
                isNarrow: window.isNarrow
                showsNotice: !window.showsSettings // the sheet has its own

                Connections {
                    target: toolbar
                    function onResultsWanted() {
                        librarySection.enterList();
                    }
                    function onSearchLeft() {
                        librarySection.takeFocus();
                    }
                }
            }
        }
        OnDemand {
            isWanted: window.model.section === WindowModel.Discover

            QuietSection {
                anchors.fill: parent
                iconName: "discover"
                title: "Discover"
            }
        }
        OnDemand {
            isWanted: window.model.section === WindowModel.Studio

            QuietSection {
                anchors.fill: parent
                iconName: "studio"
                title: "Studio"
            }
        }
        OnDemand {
            isWanted: window.model.section === WindowModel.Create

            QuietSection {
                anchors.fill: parent
                iconName: "create"
                title: "Create with AI"
            }
        }
    }
    OnDemand {
        isWanted: window.model.section !== WindowModel.Library // which has its own place for it

        WindowNotice {
            objectName: "noticeLine"
            model: window.model
            isWanted: !window.showsSettings
        }
    }
    Instantiator {
        active: window.showsKeys

        delegate: KeysSheet {
            parent: window.contentItem
            Component.onCompleted: open()
            onClosed: window.showsKeys = false
        }
    }
    Instantiator {
        active: window.showsSettings

        delegate: SettingsSheet {
            noticeHeight: sheetNotice.isShown ? sheetNotice.height + sheetNotice.anchors.bottomMargin : 0
            parent: window.contentItem
            settings: window.model.settings
            Component.onCompleted: open()
            onClosed: window.showsSettings = false

            WindowNotice {
                id: sheetNotice
                objectName: "sheetNotice"
                model: window.model
            }
        }
    }
}
