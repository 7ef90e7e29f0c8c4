import QtQuick
import Tonequill.Kit
import Tonequill.Library

// What the Auto Folder is, where it is and how it stands.
Popover {
    id: panel

    required property AutoFolderView folder

    name: "Auto Folder"
    onOpened: (panel.folder.hasFolder ? keepSwitch : chooser).forceActiveFocus(byKeys ? Qt.TabFocusReason : Qt.PopupFocusReason)

    contentItem: Column {
        spacing: Metrics.spaceM

        Column {
            width: parent.width
            spacing: Metrics.spaceS

            Label {
                width: parent.width
                type: Metrics.heading
                text: panel.name
            }
            Label {
                width: parent.width
                wrapMode: Text.Wrap
                color: Theme.textSecondary
                text: "Every sound you add to Tonequill is copied to a folder you choose, as a clean WAV with a good name. "
                    + "Open that folder in your editor once, and new sounds are already there."
            }
        }
        Column {
            width: parent.width
            spacing: Metrics.spaceS

            Item {
                width: parent.width
                height: keepSwitch.height

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    type: Metrics.bodyStrong
                    color: keepSwitch.enabled ? Theme.textPrimary : Theme.textDisabled
                    text: keepSwitch.text
                }
                ToggleSwitch {
                    id: keepSwitch
                    objectName: "autoFolderSwitch"
                    anchors.right: parent.right
                    enabled: panel.folder.hasFolder
                    text: "Keep this folder up to date"
                    checked: panel.folder.isOn
                    onToggled: panel.folder.isOn = checked
                }
            }
            Rectangle {
                width: parent.width
                height: chooser.height + 2 * chooser.y
                radius: Metrics.radiusControl
                color: Theme.buttonFill

                Icon {
                    id: folderIcon
                    x: Metrics.spaceM
                    anchors.verticalCenter: parent.verticalCenter
                    width: Metrics.icon
                    height: Metrics.icon
                    name: "folder"
                    color: panel.folder.hasFolder ? Theme.accentInk : Theme.textSecondary
                }
                Label {
                    id: folderLabel
                    anchors.left: folderIcon.right
                    anchors.leftMargin: Metrics.spaceS
                    anchors.right: chooser.left
                    anchors.rightMargin: Metrics.spaceS
                    anchors.verticalCenter: parent.verticalCenter
                    type: Metrics.bodyStrong
                    color: panel.folder.hasFolder ? Theme.textPrimary : Theme.textSecondary
                    text: panel.folder.folderText

                    HoverHandler {
                        id: overFolder
                    }
                }
                WholeText {
                    label: folderLabel
                    isOver: overFolder.hovered
                }
                ActionButton {
                    id: chooser
                    objectName: "autoFolderChooser"
                    anchors.right: parent.right
                    anchors.rightMargin: y
                    y: (Metrics.row - Metrics.button) / 2 + Metrics.focusGap
                    kind: ActionButton.Raised
                    text: panel.folder.chooserText
                    onClicked: panel.folder.chooseFolder(panel.button.Window.window)
                }
            }
        }
        AutoFolderStatus {
            width: parent.width
            folder: panel.folder
        }
        Hairline {
            width: parent.width
        }
        Label {
            width: parent.width
            type: Metrics.caption
            wrapMode: Text.Wrap
            color: Theme.textSecondary
            text: "Sounds are never deleted from the folder, and a file you delete there is not copied again."
        }
    }
}
