import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A tag that its cross takes away, or the Delete key while it has the keyboard. A
// click on its word does nothing.
T.Button {
    id: control

    signal removed

    implicitWidth: Math.max(Metrics.hitTarget, leftPadding + label.implicitWidth + cross.width)
    implicitHeight: Metrics.hitTarget
    leftPadding: Metrics.spaceS
    topInset: (Metrics.hitTarget - Metrics.tag) / 2
    bottomInset: topInset
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Keys.onDeletePressed: removed()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Backspace;
        if (event.accepted)
            removed();
    }

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: "Press Delete to remove this tag"

    background: Rectangle {
        radius: Metrics.radiusInner
        color: Theme.buttonFill

        FocusRing {
            visible: control.visualFocus
            inside: true
            around: parent.radius
        }
    }
    contentItem: Item {
        Label {
            id: label
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.rightMargin: cross.width
            anchors.verticalCenter: parent.verticalCenter
            type: Metrics.caption
            color: Theme.textSecondary
            text: control.text
        }
    }

    T.AbstractButton {
        id: cross
        objectName: "tagCross"
        anchors.right: parent.right
        width: Metrics.spaceXl
        height: parent.height
        focusPolicy: Qt.NoFocus // the Delete key is the tag's own
        hoverEnabled: true
        onClicked: control.removed()

        Accessible.role: Accessible.Button
        Accessible.name: "Remove “" + control.text + "”"

        contentItem: Item {
            Rectangle {
                anchors.centerIn: parent
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                radius: width / 2
                color: cross.down ? Theme.buttonPressed : cross.hovered ? Theme.buttonHover : "transparent"
            }
            Icon {
                anchors.centerIn: parent
                width: Metrics.spaceM
                height: Metrics.spaceM
                name: "close"
                color: cross.hovered ? Theme.textPrimary : Theme.textSecondary
                opacity: control.hovered || control.visualFocus ? 1 : Metrics.mutedRegion
            }
        }

        Tip {
            control: cross
            text: cross.Accessible.name
            keys: "Del"
        }
    }
}
