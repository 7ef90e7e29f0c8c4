import QtQuick
import Tonequill.Kit

// A surface inside a panel: raised, or sunk as a well.
Rectangle {
    id: card

    property bool isWell: false

    radius: Metrics.radiusControl
    color: Theme.card

    Rectangle {
        visible: card.isWell
        anchors.fill: parent
        anchors.margins: Metrics.hairline
        radius: card.radius - Metrics.hairline
        color: Theme.well
    }
    Rectangle {
        anchors.fill: parent
        radius: card.radius
        color: "transparent"
        border.width: Metrics.hairline
        border.color: Theme.hairline
    }
}
