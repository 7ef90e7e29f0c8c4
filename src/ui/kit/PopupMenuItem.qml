import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

T.MenuItem {
    id: control

    property string iconName: ""
    property string keys: ""
    property bool isChosen: false // of a few

    implicitWidth: row.implicitWidth + keysLabel.implicitWidth + Metrics.spaceXl + leftPadding + rightPadding
    implicitHeight: Metrics.hitTarget
    horizontalPadding: Metrics.spaceS

    Accessible.role: Accessible.MenuItem
    Accessible.name: text

    background: Rectangle {
        radius: Metrics.radiusInner
        color: control.highlighted ? Theme.accentSoft : "transparent"
    }
    contentItem: Item {
        Row {
            id: row
            anchors.verticalCenter: parent.verticalCenter
            spacing: Metrics.spaceS

            Icon {
                visible: control.iconName !== ""
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                anchors.verticalCenter: parent.verticalCenter
                name: control.iconName
                color: control.highlighted ? Theme.accentSoftText : Theme.textSecondary
                opacity: control.enabled ? 1 : Metrics.disabledGraphic
            }
            Label {
                color: !control.enabled ? Theme.textDisabled : control.highlighted ? Theme.accentSoftText : Theme.textPrimary
                text: control.text
            }
        }
        Label {
            id: keysLabel
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            type: Metrics.caption
            color: control.highlighted ? Theme.accentSoftText : Theme.textTertiary
            text: control.keys
        }
        Icon {
            visible: control.isChosen
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Metrics.iconSmall
            height: Metrics.iconSmall
            name: "check"
            color: control.highlighted ? Theme.accentSoftText : Theme.textPrimary
        }
    }
}
