import QtQuick
import Tonequill.Kit

// The ground of a list's row and its states.
Item {
    id: row

    default property alias content: inner.data
    property bool isSelected: false
    property bool isListFocused: false
    property bool hasRing: false
    property bool isMenuOpen: false
    readonly property bool isHovered: area.containsMouse

    signal pressed(button: int, modifiers: int, x: real, y: real)
    signal released // without a drag
    signal dragged

    implicitHeight: Metrics.row

    Rectangle {
        anchors.fill: parent
        radius: Metrics.radiusControl
        color: {
            if (row.isSelected)
                return row.isListFocused ? Theme.rowSelected : Theme.rowSelectedInactive;
            return area.pressed || row.isMenuOpen ? Theme.rowPressed : row.isHovered ? Theme.rowHover : "transparent";
        }

        FocusRing {
            inside: true
            visible: row.hasRing
        }
    }
    DragArea { // the wheel scrolls the list; a drag of the mouse doesn't
        id: area
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: true
        onPressed: mouse => row.pressed(mouse.button, mouse.modifiers, mouse.x, mouse.y)
        onClicked: {
            if (!isDragging)
                row.released();
        }
        onDragged: row.dragged()
    }
    Item {
        id: inner
        anchors.fill: parent
        anchors.leftMargin: Metrics.spaceS
        anchors.rightMargin: Metrics.spaceS
    }
}
