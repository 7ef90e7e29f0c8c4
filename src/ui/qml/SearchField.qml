import QtQuick
import Tonequill

// A field to search with; Escape and the cross empty it.
InputField {
    id: control

    placeholderText: name
    leftPadding: Metrics.spaceM + Metrics.iconSmall + Metrics.spaceS
    rightPadding: clearButton.visible ? Metrics.hitTarget : Metrics.spaceM
    Keys.onEscapePressed: event => {
        event.accepted = text !== "";
        clear();
    }

    Icon {
        x: Metrics.spaceM
        anchors.verticalCenter: parent.verticalCenter
        width: Metrics.iconSmall
        height: Metrics.iconSmall
        name: "search"
        color: Theme.textSecondary
    }
    IconButton {
        id: clearButton
        visible: control.text !== ""
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        iconName: "close"
        text: "Clear"
        onClicked: control.clear()
    }
}
