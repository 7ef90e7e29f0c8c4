import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A plus that becomes a field for tags: a comma ends one and goes on, Enter and a
// click elsewhere add the last, Escape doesn't.
Item {
    id: control

    readonly property bool isTyping: field.activeFocus

    signal added(tags: string) // with commas between them
    signal editingEnded

    implicitWidth: isTyping ? Metrics.meterWidth : Metrics.hitTarget
    implicitHeight: Metrics.hitTarget

    IconButton {
        objectName: "addTagButton"
        visible: !control.isTyping
        iconName: "plus"
        text: "Add a tag"
        onClicked: field.forceActiveFocus(Qt.MouseFocusReason)
    }
    T.TextField {
        id: field
        objectName: "tagField"
        anchors.fill: parent
        topInset: (Metrics.hitTarget - Metrics.tag) / 2
        bottomInset: topInset
        leftPadding: Metrics.spaceS
        rightPadding: Metrics.spaceS
        z: -1 // the plus gets the clicks until it is typed in
        opacity: activeFocus ? 1 : 0
        activeFocusOnTab: false
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.textPrimary
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.family: Metrics.bodyFont.family
        font.pixelSize: Metrics.caption.px
        selectByMouse: true
        maximumLength: 200 // of several that are pasted

        Accessible.role: Accessible.EditableText
        Accessible.name: "New tag"

        onTextEdited: {
            const end = text.search(/[,،](?!.*[,،])/); // the last one; an Arabic keyboard has its own
            if (end < 0)
                return;
            control.added(text.slice(0, end));
            text = text.slice(end + 1);
        }
        onEditingFinished: {
            control.added(text);
            clear();
        }
        onAccepted: control.editingEnded()
        Keys.onEscapePressed: {
            clear();
            control.editingEnded();
        }

        background: Rectangle {
            radius: Metrics.radiusInner
            color: Theme.fieldFill

            FocusRing {
                inside: true
                around: parent.radius
            }
        }
    }
}
