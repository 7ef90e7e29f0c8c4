import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// One choice of a SegmentedSwitch.
T.TabButton {
    id: control

    property string iconName: ""
    property string keys: ""
    property real inset: 0 // of the switch
    property bool isStop: true // of the Tab key

    implicitWidth: row.implicitWidth + leftPadding + rightPadding
    height: parent ? parent.height : Metrics.buttonSmall
    topInset: Metrics.focusGap + inset // the whole height of the switch can be hit
    bottomInset: topInset
    horizontalPadding: Metrics.spaceM
    focusPolicy: isStop || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
    hoverEnabled: true

    Accessible.name: text
    Accessible.selected: checked
    Accessible.onPressAction: {
        control.toggle();
        control.clicked();
    }

    background: Rectangle {
        radius: Metrics.radiusInner
        color: control.checked ? Theme.raised : control.hovered ? Theme.buttonFill : "transparent"

        Behavior on color {
            Fade {}
        }
        Shadow {
            visible: control.checked
            layers: Theme.controlShadow
            radius: Metrics.radiusInner
        }
        FocusRing {
            visible: control.visualFocus
            around: Metrics.radiusInner
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
                color: control.checked ? Theme.accentInk : Theme.textSecondary
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.bodyStrong
                color: control.checked ? Theme.textPrimary : Theme.textSecondary
                text: control.text
            }
        }
    }

    Tip {
        control: control
        text: control.keys !== "" ? control.text : ""
        keys: control.keys
    }
}
