import QtQuick
import Tonequill

// Where a row goes on beyond the edge of what is shown. It darkens towards its
// right; the panel's colour is translucent, so that its ground is mixed in.
Rectangle {
    id: fade

    readonly property color ground: Qt.tint(Theme.windowBase, Theme.panel)

    width: Metrics.spaceXl * 2
    gradient: Gradient {
        orientation: Gradient.Horizontal
        GradientStop { position: 0; color: Qt.rgba(fade.ground.r, fade.ground.g, fade.ground.b, 0) }
        GradientStop { position: 1; color: fade.ground }
    }
}
