import QtQuick
import Tonequill.Kit

// A field to search with. Escape and the cross empty it, another Escape leaves
// it; Down and Return go to what was found.
InputField {
    id: control

    property string keys: ""

    signal resultsWanted
    signal abandoned

    placeholderText: name
    leftPadding: Metrics.spaceS + Metrics.iconSmall + Metrics.spaceS
    rightPadding: clearButton.visible ? Metrics.hitTarget : Metrics.spaceM
    Keys.onEscapePressed: {
        if (text === "")
            abandoned();
        else
            clear();
    }
    Keys.onDownPressed: resultsWanted()
    Keys.onReturnPressed: resultsWanted()
    Keys.onEnterPressed: resultsWanted()

    Icon {
        x: Metrics.spaceS
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
    Tip {
        control: control
        isWanted: control.hovered && !control.activeFocus
        text: control.keys !== "" ? control.name : ""
        keys: control.keys
    }
}
