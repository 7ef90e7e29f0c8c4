import QtQuick
import Tonequill.Kit

// One of a few, side by side. Its children are Segments; the arrows move between them.
Item {
    id: control

    default property alias segments: row.data
    property bool isOnToolbar: false
    property bool isSunken: false // on a card, which a fill would lighten in the dark
    property bool isSmall: false // smaller to look at than to hit
    property string name: ""

    readonly property real inset: isSmall ? (Metrics.hitTarget - Metrics.buttonSmall) / 2 : 0

    // Chooses the neighbour of the one that is chosen and gives it the keyboard.
    function step(by: int) {
        for (let i = 0; i < row.children.length; ++i) {
            const next = row.children[i + by] as Segment;
            const each = row.children[i] as Segment;
            if (!each || !each.checked || !next)
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
    implicitHeight: isSmall ? Metrics.hitTarget : Metrics.button

    Accessible.role: Accessible.PageTabList
    Accessible.name: name

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: control.inset
        anchors.bottomMargin: control.inset
        radius: Metrics.radiusControl
        color: control.isOnToolbar ? Theme.toolbarButton : control.isSunken && Theme.isDark ? Theme.fieldFill : Theme.buttonFill
    }
    Row {
        id: row
        x: Metrics.focusGap
        height: parent.height
        spacing: Metrics.focusGap
    }
}
