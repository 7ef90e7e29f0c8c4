import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// On or off. `text` is its name.
T.Switch {
    id: control

    property string tip: ""

    function flip() {
        toggle();
        toggled();
    }

    implicitWidth: Metrics.switchWidth
    implicitHeight: Metrics.hitTarget
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat) // a key that is held is one wish
            flip();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            flip();
    }

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked

    indicator: Rectangle {
        y: (control.height - height) / 2
        width: Metrics.switchWidth
        height: Metrics.switchHeight
        radius: height / 2
        color: control.checked ? Theme.accent : Theme.control
        opacity: control.enabled ? 1 : Metrics.disabledGraphic

        Behavior on color {
            Fade {}
        }
        Rectangle {
            x: Metrics.focusGap + control.visualPosition * (parent.width - width - 2 * Metrics.focusGap)
            y: Metrics.focusGap
            width: height
            height: parent.height - 2 * Metrics.focusGap
            radius: height / 2
            color: Theme.isDark ? Theme.accentText : Theme.thumb

            Behavior on x {
                Ease { duration: Metrics.motionHover }
            }
        }
        FocusRing {
            visible: control.visualFocus
            around: parent.radius
        }
    }

    Tip {
        control: control
        text: control.tip
    }
}
