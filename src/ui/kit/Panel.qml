import QtQuick
import Tonequill.Kit

// A translucent surface on the window's ground.
Item {
    id: panel

    default property alias content: inner.data
    property real padding: Metrics.spaceL
    property real topPadding: padding

    Shadow {
        layers: Theme.panelShadow
    }
    Rectangle {
        anchors.fill: parent
        radius: Metrics.radiusCard
        color: Theme.panel
    }
    Rectangle { // a lit edge in the light, a drawn one in the dark
        anchors.fill: parent
        radius: Metrics.radiusCard
        color: "transparent"
        border.width: Metrics.hairline
        border.color: Theme.isDark ? Theme.hairline : Theme.panel
    }
    Item {
        id: inner
        anchors.fill: parent
        anchors.margins: panel.padding + Metrics.hairline
        anchors.topMargin: panel.topPadding + Metrics.hairline
    }
}
