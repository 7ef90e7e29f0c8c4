import QtQuick
import Tonequill

// What is set, and on the right what sets it or tells it.
Item {
    id: row

    default property alias content: right.data
    property string text: ""
    property bool isFirst: false // of its card: nothing parts it from what is above

    width: parent ? parent.width : 0
    height: Metrics.row + (isFirst ? 0 : Metrics.hairline)

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
    }
}
