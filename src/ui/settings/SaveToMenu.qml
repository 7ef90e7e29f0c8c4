import QtQuick
import Tonequill.Kit
import Tonequill.Settings

// Where sounds are saved, as a button with a menu.
ActionButton {
    id: control

    required property SettingsView settings

    kind: ActionButton.Raised
    iconName: "folder"
    trailingIconName: "chevron-down"
    maximumTextWidth: Metrics.menuWidth
    text: settings.saveFolderName
    tip: settings.saveFolder
    onClicked: menu.popup(control, width - menu.width, height + Metrics.spaceXs)
    Keys.onDownPressed: clicked()

    Accessible.name: "Save to: " + settings.saveFolderName

    PopupMenu {
        id: menu

        PopupMenuItem {
            text: "Desktop"
            isChosen: control.settings.saveTo === SettingsView.Desktop
            onTriggered: control.settings.saveToDesktop()
        }
        PopupMenuItem {
            text: "Downloads"
            isChosen: control.settings.saveTo === SettingsView.Downloads
            onTriggered: control.settings.saveToDownloads()
        }
        PopupMenuItem {
            text: "Choose Folder…"
            onTriggered: control.settings.chooseSaveFolder(control.Window.window)
        }
    }
}
