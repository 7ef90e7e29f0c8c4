import QtQuick
import Tonequill.Kit

// An edge of the range: a line with a grip, which the pointer drags (WaveStage)
// and the arrows move.
KeyboardItem {
    id: handle

    required property string name
    required property string valueText
    required property real at // the edge's place in the parent

    required property real seconds
    required property real duration
    // What a screen reader asks a slider for, and sets.
    property real value: seconds
    readonly property real minimumValue: 0
    readonly property real maximumValue: duration
    readonly property real stepSize: 0.01

    signal moved(by: real) // seconds

    onValueChanged: {
        if (value !== seconds)
            moved(value - seconds);
    }

    function step(by: real, event) {
        hasVisualFocus = true;
        moved(event.modifiers & Qt.ShiftModifier ? by * 10 : by);
        event.accepted = true;
    }

    x: at - width / 2
    width: Metrics.hitTarget
    height: parent.height

    Accessible.role: Accessible.Slider
    Accessible.name: name + ", " + valueText

    Accessible.onIncreaseAction: handle.moved(handle.stepSize)
    Accessible.onDecreaseAction: handle.moved(-handle.stepSize)

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Left: return step(-stepSize, event);
        case Qt.Key_Right: return step(stepSize, event);
        case Qt.Key_PageDown: return step(-1, event);
        case Qt.Key_PageUp: return step(1, event);
        case Qt.Key_Home: return step(-duration, event);
        case Qt.Key_End: return step(duration, event);
        }
    }

    visible: x + width > 0 && parent && x < parent.width

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Metrics.strokePlayhead
        height: parent.height
        color: Theme.handle
    }
    Rectangle { // it and its ring stay whole where the line is at the wave's edge
        readonly property real edge: ring.visible ? ring.reach : 0
        readonly property real room: handle.parent ? handle.parent.width - handle.x - width - edge : 0

        x: Math.max(edge - handle.x, Math.min(room, (handle.width - width) / 2))
        anchors.verticalCenter: parent.verticalCenter
        width: Metrics.handle
        height: Metrics.grip
        radius: Metrics.spaceXs
        color: Theme.handle

        Row {
            anchors.centerIn: parent
            spacing: Metrics.strokePlayhead

            Rectangle {
                width: Metrics.hairline
                height: Metrics.spaceM
                color: Theme.handleGrip
            }
            Rectangle {
                width: Metrics.hairline
                height: Metrics.spaceM
                color: Theme.handleGrip
            }
        }
        FocusRing {
            id: ring
            visible: handle.activeFocus && handle.hasVisualFocus
            around: parent.radius
        }
    }
}
