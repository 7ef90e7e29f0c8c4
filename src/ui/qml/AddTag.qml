import QtQuick
import Tonequill
import QtQuick.Templates as T

// A small plus that becomes a field for one tag after the other.
T.TextField {
    id: control

    signal added(tag: string)
    signal editingEnded

    implicitWidth: activeFocus ? Metrics.meterWidth : Metrics.hitTarget
    implicitHeight: Metrics.hitTarget
    topInset: (Metrics.hitTarget - Metrics.tag) / 2
    bottomInset: topInset
    horizontalPadding: Metrics.spaceS
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.textPrimary
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    font.family: Metrics.bodyFont.family
    font.pixelSize: Metrics.caption.px
    selectByMouse: true
    hoverEnabled: true
    maximumLength: 40

    Accessible.role: Accessible.EditableText
    Accessible.name: "Add a tag"

    onEditingFinished: {
        added(text);
        clear();
    }
    Keys.onEscapePressed: {
        clear();
        editingEnded();
    }

    background: Rectangle {
        radius: Metrics.radiusInner
        color: control.activeFocus ? Theme.fieldFill : control.hovered ? Theme.buttonFill : "transparent"

        FocusRing {
            visible: control.activeFocus
            inside: true
            around: parent.radius
        }
    }

    Icon {
        visible: !control.activeFocus
        anchors.centerIn: parent
        width: Metrics.spaceM
        height: Metrics.spaceM
        name: "plus"
        color: Theme.textSecondary
    }
    Tip {
        control: control
        text: control.activeFocus ? "" : "Add a tag"
    }
}
