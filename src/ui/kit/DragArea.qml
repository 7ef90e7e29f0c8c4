import QtQuick

// Tells when the pointer that was pressed here has moved far enough to drag.
MouseArea {
    id: area

    property point from
    property bool isDragging: false // once for each press

    signal dragged

    preventStealing: true
    onPressed: mouse => {
        from = Qt.point(mouse.x, mouse.y);
        isDragging = false;
    }
    onPositionChanged: mouse => {
        if (isDragging || !(pressedButtons & Qt.LeftButton)
                || Math.max(Math.abs(mouse.x - from.x), Math.abs(mouse.y - from.y)) < Application.styleHints.startDragDistance)
            return;
        isDragging = true;
        dragged();
    }
}
