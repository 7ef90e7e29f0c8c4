import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// What the open sound is, and what becomes of its marked parts.
Item {
    id: header

    required property SoundView sound
    required property SoundActions actions
    required property bool isNarrow

    signal editingEnded

    function rename() {
        name.forceActiveFocus(Qt.ShortcutFocusReason);
        name.selectAll();
    }

    height: Metrics.button + Metrics.spaceXs + Metrics.tag

    readonly property real room: buttons.x - Metrics.spaceM // for the name and the one that is suggested

    NameField {
        id: name
        objectName: "nameField"
        x: -leftPadding
        width: Math.min(implicitWidth, header.room - x - Metrics.spaceXs - Math.min(smart.implicitWidth, header.room / 2))
        sound: header.sound
        onEditingEnded: header.editingEnded()
    }
    SmartName {
        id: smart
        objectName: "smartName"
        x: name.x + name.width + Metrics.spaceXs
        width: Math.min(implicitWidth, header.room - x)
        height: name.height
        sound: header.sound
    }
    Row {
        id: buttons
        anchors.right: parent.right
        spacing: Metrics.spaceS

        DragButton {
            id: drag
            objectName: "dragButton"
            enabled: header.sound.isReady
            isCompact: header.isNarrow
            text: "Drag"
            tip: "Drag the marked part into another program. Return copies it, to be pasted there."
            onCopied: header.actions.copyParts()
            onDragged: header.actions.dragParts(drag)
        }
        ActionButton {
            objectName: "saveButton"
            enabled: header.actions.canSave
            isCompact: header.isNarrow
            iconName: "download"
            text: header.actions.saveText
            tip: header.actions.saveTip
            keys: "Ctrl+S"
            onClicked: header.actions.saveToDesktop()
        }
        ActionButton {
            objectName: "finalCutButton"
            visible: header.actions.canSendToFinalCut
            enabled: !header.actions.isWorking
            isCompact: header.isNarrow
            iconName: "film"
            text: "Send to Final Cut Pro"
            onClicked: header.actions.sendToFinalCut()
        }
        ActionButton {
            objectName: "addButton"
            kind: ActionButton.Accent
            enabled: header.actions.canAdd
            isLoading: header.actions.isAdding
            iconName: "plus"
            text: header.actions.addText
            tip: header.actions.addTip
            keys: "Ctrl+Return"
            onClicked: header.actions.addToLibrary()
        }
    }
    TagRow {
        z: -1 // what of it reaches under the buttons is theirs
        anchors.bottom: parent.bottom
        width: parent.width
        sound: header.sound
        onEditingEnded: header.editingEnded()
    }
}
