pragma ComponentBehavior: Bound
import QtQuick
import Tonequill
import QtQuick.Templates as T

// The library's rows, with the pointer and the keys.
T.Control {
    id: control

    required property LibraryListModel model
    property bool isKeyboard: false // the last step was made with a key

    function step(row, event) {
        isKeyboard = true;
        model.moveTo(row, event.modifiers);
        event.accepted = true;
    }

    function openMenu(row: int, x: real, y: real) {
        menu.row = row;
        menu.popup(x, y);
    }

    function openMenuOfCurrent() {
        const item = list.itemAtIndex(model.currentRow);
        if (item)
            openMenu(model.currentRow, Metrics.spaceXl, item.y - list.contentY + item.height);
    }

    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.List
    Accessible.name: "Library"

    Keys.onPressed: event => {
        const page = Math.max(1, Math.floor(list.height / Metrics.row) - 1);
        const now = model.currentRow;
        switch (event.key) {
        case Qt.Key_Up: return step(now - 1, event);
        case Qt.Key_Down: return step(now + 1, event);
        case Qt.Key_PageUp: return step(now - page, event);
        case Qt.Key_PageDown: return step(now + page, event);
        case Qt.Key_Home: return step(0, event);
        case Qt.Key_End: return step(list.count - 1, event);
        case Qt.Key_Delete:
            model.deleteSelected();
            event.accepted = true;
            return;
        case Qt.Key_Menu:
            openMenuOfCurrent();
            event.accepted = true;
            return;
        case Qt.Key_F10:
            event.accepted = (event.modifiers & Qt.ShiftModifier) !== 0;
            if (event.accepted)
                openMenuOfCurrent();
            return;
        case Qt.Key_A:
            event.accepted = (event.modifiers & Qt.ControlModifier) !== 0;
            if (event.accepted)
                model.selectAll();
            return;
        }
    }

    contentItem: ListView {
        id: list
        model: control.model
        currentIndex: control.model.currentRow
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        clip: true
        cacheBuffer: Metrics.row * 8
        onCurrentIndexChanged: {
            if (currentIndex >= 0)
                positionViewAtIndex(currentIndex, ListView.Contain);
        }

        T.ScrollBar.vertical: ScrollThumb {}

        delegate: SoundRow {
            id: row
            required property bool selected

            width: ListView.view.width
            isSelected: selected
            isListFocused: control.activeFocus || menu.visible
            hasRing: control.activeFocus && (control.visualFocus || control.isKeyboard) && index === control.model.currentRow
            isMenuOpen: menu.visible && menu.row === index
            onPressed: (button, modifiers, x, y) => {
                control.forceActiveFocus(Qt.MouseFocusReason);
                control.isKeyboard = false;
                if (button === Qt.LeftButton) {
                    control.model.click(index, modifiers);
                } else if (!row.isIncoming) {
                    const at = row.mapToItem(control, x, y);
                    control.openMenu(index, at.x, at.y);
                }
            }
        }
    }

    PopupMenu {
        id: menu
        property int row: -1

        PopupMenuItem {
            iconName: "trash"
            text: menu.visible ? control.model.deleteLabel(menu.row) : ""
            keys: "Del"
            onTriggered: control.model.deleteFrom(menu.row)
        }
    }
}
