import QtQuick
import Tonequill.Kit

// A row that is longer than its place: the wheel and a drag move it sideways, held
// within its ends. It reaches beyond its place on all sides by `room`, so that what
// is in it can wear a focus ring.
Flickable {
    id: scroller

    readonly property real room: Metrics.focusGap + Metrics.focus
    readonly property real lastX: Math.max(0, contentWidth - width)
    readonly property bool hasMoreLeft: contentX > 1
    readonly property bool hasMoreRight: contentX < lastX - 1

    // Brings something in it into view, and shows that the row goes on behind it.
    function show(item: Item) {
        const left = item.x;
        const right = item.x + item.width + 2 * room;
        contentX = Math.max(0, Math.min(left, Math.max(contentX, right - width + (right < contentWidth ? Metrics.spaceXl : 0))));
    }

    function scrollBy(pixels: real) {
        contentX = Math.max(0, Math.min(lastX, contentX + pixels));
    }

    contentHeight: height
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.HorizontalFlick
    clip: true
    onLastXChanged: scrollBy(0) // a row that got shorter is still there

    WheelHandler {
        readonly property real pixels: 0.5 // of a wheel's eighths of a degree: 60 a notch

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        orientation: Qt.Vertical
        target: null
        onWheel: event => scroller.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y * pixels)
    }
}
