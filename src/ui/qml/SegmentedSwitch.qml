import QtQuick
import Tonequill

// One of a few, side by side. Its children are Segments; the arrows move between them.
Rectangle {
    id: control

    default property alias segments: row.data
    property bool isOnToolbar: false
    property string name: ""

    // Chooses the neighbour of the one that is chosen and gives it the keyboard.
    function step(by: int) {
        for (let i = 0; i < row.children.length; ++i) {
            const next = row.children[i + by] as Segment;
            if (!(row.children[i] as Segment).checked || !next)
                continue;
            next.forceActiveFocus(Qt.TabFocusReason);
            next.toggle();
            next.clicked();
            return;
        }
    }

    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    implicitWidth: row.implicitWidth + 2 * row.x
    implicitHeight: Metrics.button
    radius: Metrics.radiusControl
    color: isOnToolbar ? Theme.toolbarButton : Theme.buttonFill

    Accessible.role: Accessible.PageTabList
    Accessible.name: name

    Row {
        id: row
        x: Metrics.focusGap
        height: parent.height
        spacing: Metrics.focusGap
    }
}
