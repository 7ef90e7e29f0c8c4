import QtQuick
import Tonequill.Kit

// What is set, and on the right what sets it or tells it.
Item {
    id: row

    default property alias content: right.data
    property string text: ""
    property string value: "" // that is told and can't be set
    property bool isFirst: false // of its card: nothing parts it from what is above

    width: parent ? parent.width : 0
    height: Metrics.row + (isFirst ? 0 : Metrics.hairline)

    Accessible.role: Accessible.StaticText
    Accessible.name: value === "" ? text : text + ": " + value
    Accessible.ignored: value === "" // the control has the name

    Hairline {
        visible: !row.isFirst
        width: parent.width
    }
    Label {
        x: Metrics.spaceL
        anchors.bottom: parent.bottom
        anchors.bottomMargin: (Metrics.row - height) / 2
        width: right.x - 2 * Metrics.spaceL
        color: row.enabled ? Theme.textPrimary : Theme.textSecondary
        text: row.text
    }
    Item {
        id: right
        anchors.right: parent.right
        anchors.rightMargin: Metrics.spaceL
        anchors.bottom: parent.bottom
        width: childrenRect.width
        height: Metrics.row

        NumberText {
            anchors.verticalCenter: parent.verticalCenter
            type: Metrics.body
            color: Theme.textSecondary
            text: row.value
        }
    }
}
