import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// Something to drag out: dashed, as everything that moves by dragging. A click
// alone does nothing; the keys can't drag, Return copies instead.
T.Button {
    id: control

    property bool isCompact: false
    property string tip: ""

    signal dragged
    signal copied

    implicitHeight: Metrics.button
    implicitWidth: isCompact ? Metrics.button : row.implicitWidth + 2 * Metrics.spaceM
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat) // a key that is held is one wish
            copied();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            copied();
    }

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: tip
    Accessible.onPressAction: control.copied()

    background: DashedFrame {
        radius: Metrics.radiusControl
        color: Theme.control
        fillColor: area.pressed ? Theme.buttonPressed : control.hovered && control.enabled ? Theme.buttonFill : "transparent"
        opacity: control.enabled ? 1 : Metrics.disabledGraphic

        FocusRing {
            visible: control.visualFocus
        }
    }
    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Metrics.spaceS

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                name: "drag"
                color: Theme.textPrimary
                opacity: control.enabled ? 1 : Metrics.disabledGraphic
            }
            Label {
                visible: !control.isCompact
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.bodyStrong
                color: control.enabled ? Theme.textPrimary : Theme.textDisabled
                text: control.text
            }
        }
    }

    DragArea {
        id: area
        anchors.fill: parent
        cursorShape: Qt.OpenHandCursor
        onDragged: control.dragged()
    }
    Tip {
        control: control
        text: control.tip
    }
}
