import QtQuick
import Tonequill.Kit

// One of a few, side by side. Its children are Segments, which the Tab key passes in
// one step; the arrows move between them.
Item {
    id: control

    default property alias segments: row.data
    property bool isOnToolbar: false
    property bool isSunken: false // on a card, which a fill would lighten in the dark
    property bool isSmall: false // smaller to look at than to hit
    property string name: ""

    readonly property real inset: isSmall ? (Metrics.hitTarget - Metrics.buttonSmall) / 2 : 0

    readonly property var members: {
        const found = [];
        for (let i = 0; i < row.children.length; ++i) {
            if (row.children[i] as Segment)
                found.push(row.children[i]);
        }
        return found;
    }
    readonly property Segment chosen: members.find(each => each.checked) ?? null

    // Where the Tab key comes: to the one that is chosen, or to the first.
    onMembersChanged: {
        for (const each of members)
            each.isStop = Qt.binding(() => each === (control.chosen ?? control.members[0]));
    }

    // Chooses the neighbour of the one that is chosen and gives it the keyboard.
    function step(by: int) {
        const from = chosen ?? members.find(each => each.activeFocus);
        const next = members[members.indexOf(from) + by];
        if (!from || !next)
            return;
        next.forceActiveFocus(Qt.TabFocusReason);
        next.toggle();
        next.clicked();
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
