import QtQuick

// Controls that the Tab key passes in one step: the arrows go from one to the next.
// They are the children of `members` that have an `isStop`, which says where the Tab
// key comes, and they tell which of them had the keyboard last.
Item {
    id: group

    required property Item members
    property int columns: 1 // of a grid; a row has one
    property Item stop: null

    function go(by: int) {
        const all = [];
        for (let i = 0; i < members.children.length; ++i) {
            const each = members.children[i];
            if (each.isStop !== undefined && each.visible && each.enabled)
                all.push(each);
        }
        const next = all[all.findIndex(each => each.activeFocus) + by];
        if (next)
            next.forceActiveFocus(Qt.TabFocusReason);
    }

    Keys.onLeftPressed: go(-1)
    Keys.onRightPressed: go(1)
    Keys.onUpPressed: event => {
        event.accepted = columns > 1;
        if (event.accepted)
            go(-columns);
    }
    Keys.onDownPressed: event => {
        event.accepted = columns > 1;
        if (event.accepted)
            go(columns);
    }
}
