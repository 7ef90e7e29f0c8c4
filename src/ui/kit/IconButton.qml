import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A button that is an icon; `text` is its name. On is `checked`.
T.Button {
    id: control

    required property string iconName
    property string keys: ""

    function press() {
        if (checkable) {
            toggle();
            toggled();
        }
        clicked();
    }

    implicitWidth: Metrics.hitTarget
    implicitHeight: Metrics.hitTarget
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat) // a key that is held is one wish
            press();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            press();
    }

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked

    background: Rectangle {
        radius: Metrics.radiusControl
        color: {
            if (control.checked)
                return control.hovered ? Theme.accentSoftHover : Theme.accentSoft;
            return control.down ? Theme.buttonPressed : control.hovered ? Theme.buttonHover : "transparent";
        }

        Behavior on color {
            Fade {}
        }
        FocusRing {
            visible: control.visualFocus
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            width: Metrics.iconSmall
            height: Metrics.iconSmall
            name: control.iconName
            color: control.checked ? Theme.accentSoftText : control.hovered ? Theme.textPrimary : Theme.textSecondary
            opacity: control.enabled ? 1 : Metrics.disabledGraphic
        }
    }

    Tip {
        control: control
        text: control.text
        keys: control.keys
    }
}
