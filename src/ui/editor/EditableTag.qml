import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A tag that a click on its cross, or the Delete key, takes away.
T.Button {
    id: control

    signal removed

    implicitWidth: Math.max(Metrics.hitTarget, label.implicitWidth + 2 * Metrics.spaceS)
    implicitHeight: Metrics.hitTarget
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
        color: control.hovered ? Theme.buttonHover : Theme.buttonFill

        FocusRing {
            visible: control.visualFocus
            inside: true
            around: parent.radius
        }
    }
    contentItem: Item {
        Label {
            id: label
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width)
            type: Metrics.caption
            color: Theme.textSecondary
            opacity: control.hovered ? 0 : 1
            text: control.text
        }
        MouseArea {
            anchors.fill: parent
            onClicked: control.removed()

            Icon {
                visible: control.hovered
                anchors.centerIn: parent
                width: Metrics.spaceM
                height: Metrics.spaceM
                name: "close"
                color: Theme.textPrimary
            }
        }
    }

    Tip {
        control: control
        text: "Remove “" + control.text + "”"
        keys: "Del"
    }
}
