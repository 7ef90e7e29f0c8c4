import QtQuick
import Tonequill.Kit

// How a colour changes under the pointer.
ColorAnimation {
    duration: Metrics.motionHover
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0.2, 0, 0, 1, 1, 1] // cubic-bezier(0.2, 0, 0, 1)
}
