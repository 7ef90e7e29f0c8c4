import QtQuick
import Tonequill.Kit

// Where a row goes on beyond the edge of what is shown: it gets lost in the
// panel, whose colour is `ground`, towards the right.
Rectangle {
    id: fade

    required property color ground

    width: Metrics.spaceXl * 2
    gradient: Gradient {
        orientation: Gradient.Horizontal
        GradientStop { position: 0; color: Qt.rgba(fade.ground.r, fade.ground.g, fade.ground.b, 0) }
        GradientStop { position: 1; color: fade.ground }
    }
}
