import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit
import Tonequill.Editor

// The sound's name, edited where it stands: Enter and a click elsewhere keep the
// new one, Escape the old one.
T.TextField {
    id: control

    required property SoundView sound
    signal editingEnded

    function putBack() {
        text = sound.name;
        cursorPosition = 0;
    }

    implicitWidth: Math.ceil(measure.implicitWidth) + leftPadding + rightPadding + Metrics.focus
    implicitHeight: Metrics.button
    leftPadding: Metrics.spaceXs
    rightPadding: Metrics.spaceXs
    verticalAlignment: TextInput.AlignVCenter
    horizontalAlignment: TextInput.AlignLeft
    color: activeFocus ? Theme.textPrimary : "transparent"
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    font.family: Metrics.bodyFont.family
    font.pixelSize: Metrics.title.px
    font.weight: Metrics.title.weight
    font.letterSpacing: Metrics.title.letterSpacing
    selectByMouse: true
    hoverEnabled: true
    maximumLength: 200

    Accessible.role: Accessible.EditableText
    Accessible.name: "Name of the sound"

    Component.onCompleted: putBack()
    onActiveFocusChanged: {
        if (!activeFocus)
            putBack(); // what was typed has been kept by then
    }
    onEditingFinished: sound.rename(text)
    onAccepted: editingEnded()
    Keys.onEscapePressed: {
        putBack();
        editingEnded();
    }

    Connections {
        target: control.sound
        function onOpened() {
            control.putBack();
        }
        function onChanged() {
            if (!control.activeFocus)
                control.putBack();
        }
    }

    background: Rectangle {
        radius: Metrics.radiusInner
        color: control.activeFocus ? Theme.fieldFill : control.hovered ? Theme.buttonFill : "transparent"

        Behavior on color {
            Fade {}
        }
        FocusRing {
            visible: control.activeFocus
            inside: true
            around: parent.radius
        }
    }

    Label { // how wide the whole name would be
        id: measure
        visible: false
        type: Metrics.title
        text: control.text
    }
    Label {
        id: shown
        visible: !control.activeFocus
        x: control.leftPadding
        width: parent.width - control.leftPadding - control.rightPadding
        height: parent.height
        type: Metrics.title
        text: control.sound.name
    }
    WholeText {
        label: shown
        isOver: control.hovered && !control.activeFocus
    }
}
