pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Settings

// The settings, over the main window and as tall as it allows. What is given to it
// lies over them.
Sheet {
    id: sheet

    required property SettingsView settings
    property real noticeHeight: 0 // what a notice at the foot takes; it covers no row

    title: "Settings"
    implicitWidth: Metrics.settingsWidth
    margins: Metrics.windowGap
    padding: Metrics.hairline
    topPadding: Metrics.toolbar + Metrics.hairline
    onAboutToShow: settings.refresh()

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: sheet.close()
    }

    background: Rectangle {
        radius: Metrics.radiusCard
        color: Theme.popover
        border.width: Metrics.hairline
        border.color: Theme.isDark ? Theme.border : Theme.hairline

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        Shadow {
            layers: Theme.popoverShadow
        }
        Label {
            x: Metrics.spaceXl + Metrics.hairline
            y: (Metrics.toolbar - height) / 2 + Metrics.hairline
            type: Metrics.heading
            text: sheet.title
        }
        Hairline {
            y: Metrics.toolbar
            width: parent.width
        }
    }

    contentItem: FocusScope {
        implicitHeight: page.implicitHeight
        focus: true

        SettingsPage {
            id: page
            anchors.fill: parent
            anchors.bottomMargin: sheet.noticeHeight
            settings: sheet.settings
        }
        IconButton {
            objectName: "closeButton"
            anchors.right: parent.right
            anchors.rightMargin: Metrics.spaceS
            y: -Metrics.toolbar + (Metrics.toolbar - height) / 2
            iconName: "close"
            text: "Close"
            keys: "Esc"
            onClicked: sheet.close()
        }
    }
}
