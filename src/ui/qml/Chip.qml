import QtQuick
import Tonequill
import QtQuick.Templates as T

// A proposal that can be picked, with a detail such as its length.
T.AbstractButton {
    id: control

    property string iconName: ""
    property string detail: ""
    property string tip: ""
    property bool isPicked: false

    implicitWidth: row.implicitWidth + leftPadding + rightPadding
    implicitHeight: Metrics.chip
    horizontalPadding: Metrics.spaceS
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: detail === "" ? text : text + ", " + detail
    Accessible.selected: isPicked

    background: Rectangle {
        radius: Metrics.radiusChip
        color: {
            if (control.isPicked)
                return control.hovered ? Theme.accentSoftHover : Theme.accentSoft;
            return control.down ? Theme.buttonPressed : control.hovered && control.enabled ? Theme.buttonHover : Theme.buttonFill;
        }
        border.width: control.isPicked ? Metrics.strokeControl : 0
        border.color: Theme.accentInk

        Behavior on color {
            Fade {}
        }
        FocusRing {
            visible: control.visualFocus
            around: Metrics.radiusChip
        }
    }
    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Metrics.spaceS

            Icon {
                visible: control.iconName !== ""
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                anchors.verticalCenter: parent.verticalCenter
                name: control.iconName
                color: control.isPicked ? Theme.accentSoftText : Theme.textPrimary
                opacity: control.enabled ? 1 : Metrics.disabledGraphic
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.bodyStrong
                color: !control.enabled ? Theme.textDisabled : control.isPicked ? Theme.accentSoftText : Theme.textPrimary
                text: control.text
            }
            NumberText {
                visible: text !== ""
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.body
                color: !control.enabled ? Theme.textDisabled : control.isPicked ? Theme.accentSoftText : Theme.textSecondary
                text: control.detail
            }
        }
    }

    Tip {
        control: control
        text: control.tip
    }
}
