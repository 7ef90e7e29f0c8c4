import QtQuick
import Tonequill.Kit

// The ring around what has the keyboard. It lies outside its parent, or inside
// where rows stand close.
Rectangle {
    property bool inside: false
    property real around: Metrics.radiusControl // the parent's radius

    readonly property real reach: inside ? 0 : Metrics.focusGap + Metrics.focus

    anchors.fill: parent
    anchors.margins: -reach
    radius: around + reach
    color: "transparent"
    border.width: Metrics.focus
    border.color: Theme.focusRing
}
