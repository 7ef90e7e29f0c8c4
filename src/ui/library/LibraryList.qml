pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit
import Tonequill.Library

// The library's rows, with the pointer and the keys.
KeyboardItem {
    id: control

    required property LibraryListModel model

    signal rowDragged(row: int)
    signal renameWanted // of the open sound

    function step(row, event) {
        hasVisualFocus = true;
        model.moveTo(row, event.modifiers);
        event.accepted = true;
    }

    // What finds a name: anything that one can type, but for the control characters.
    function isLetter(event): bool {
        return event.text.trim() !== "" && event.text >= " " && event.text !== "\u007f"
            && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier));
    }

    function openMenu(row: int, x: real, y: real) {
        menu.row = row;
        menu.popup(x, y);
    }

    function openMenuOfCurrent() {
        const row = model.currentRow;
        if (row >= 0)
            openMenu(row, Metrics.spaceXl, (row + 1) * Metrics.row - list.contentY);
    }

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
        case Qt.Key_Return:
        case Qt.Key_Enter:
            model.click(model.currentRow, Qt.NoModifier);
            event.accepted = true;
            return;
        case Qt.Key_Delete:
            if (!event.isAutoRepeat) // each press deletes once
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
            if (event.modifiers & Qt.ControlModifier) {
                model.selectAll();
                event.accepted = true;
                return;
            }
            break;
        }
        event.accepted = isLetter(event);
        if (event.accepted) {
            hasVisualFocus = true;
            model.type(event.text);
        }
    }

    ListView {
        id: list
        anchors.fill: parent
        model: control.model
        currentIndex: -1 // it would scroll there by itself
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        clip: true
        cacheBuffer: Metrics.row * 8
        // The view follows whoever goes somewhere; when rows come or go it stays.

        function showCurrent() {
            if (control.model.currentRow >= 0)
                positionViewAtIndex(control.model.currentRow, ListView.Contain);
        }

        T.ScrollBar.vertical: ScrollThumb {}

        Timer { // once it has its height
            interval: 0
            running: true
            onTriggered: list.showCurrent()
        }

        Connections {
            target: control.model
            function onRowWanted(row: int) {
                list.positionViewAtIndex(row, ListView.Contain);
            }
            function onQueryChanged() {
                if (control.model.query !== "")
                    list.positionViewAtBeginning(); // the best first
                else
                    list.showCurrent();
            }
        }

        delegate: SoundRow {
            id: row
            required property bool selected
            property bool waits: false // for the release: until then it may be a drag of all that are selected

            // A row that waits to be used again is hidden from screen readers, too.
            ListView.onPooled: visible = false
            ListView.onReused: visible = true
            width: ListView.view.width
            isSelected: selected
            isListFocused: control.activeFocus || menu.visible
            hasRing: control.activeFocus && control.hasVisualFocus && index === control.model.currentRow
            isMenuOpen: menu.visible && menu.row === index
            onPressed: (button, modifiers, x, y) => {
                control.forceActiveFocus(Qt.MouseFocusReason);
                control.hasVisualFocus = false;
                waits = button === Qt.LeftButton && selected && modifiers === Qt.NoModifier;
                if (waits)
                    return;
                if (button === Qt.LeftButton) {
                    control.model.click(index, modifiers);
                } else if (!row.isIncoming) {
                    const at = row.mapToItem(control, x, y);
                    control.openMenu(index, at.x, at.y);
                }
            }
            onReleased: {
                if (waits)
                    control.model.click(index, Qt.NoModifier);
                waits = false;
            }
            onDragged: {
                if (!isIncoming)
                    control.rowDragged(index);
            }
        }
    }

    FocusRing { // where no row can wear it
        inside: true
        visible: control.activeFocus && control.hasVisualFocus && control.model.currentRow < 0
    }

    Connections {
        target: control.model

        // The menu means what it was opened for: it goes when the rows move under it.
        function onRowsInserted() {
            menu.leave();
        }
        function onRowsRemoved() {
            menu.leave();
        }
    }

    PopupMenu {
        id: menu
        property int row: -1

        function leave() {
            row = -1;
            close();
        }

        PopupMenuItem {
            objectName: "smartNameItem"
            iconName: "sparkle"
            text: menu.visible ? control.model.smartNameLabel(menu.row) : ""
            onTriggered: control.model.smartNameFrom(menu.row)
        }
        PopupMenuItem {
            objectName: "renameItem"
            iconName: "edit"
            text: "Rename"
            keys: "F2"
            onTriggered: {
                control.model.click(menu.row, Qt.NoModifier);
                menu.focusBefore = null; // the name field gets the keyboard
                control.renameWanted();
            }
        }
        PopupMenuItem {
            objectName: "saveItem"
            iconName: "download"
            text: menu.visible ? control.model.saveLabel(menu.row) : ""
            onTriggered: control.model.saveFrom(menu.row)
        }
        PopupMenuItem {
            objectName: "showItem"
            iconName: "folder"
            text: "Show in Finder"
            onTriggered: control.model.showFileOf(menu.row)
        }
        PopupMenuItem {
            objectName: "creditItem"
            enabled: menu.visible && control.model.hasCredit(menu.row)
            iconName: "credit"
            text: menu.visible ? control.model.copyCreditLabel(menu.row) : ""
            onTriggered: control.model.copyCreditFrom(menu.row)
        }
        PopupMenuItem {
            iconName: "trash"
            text: menu.visible ? control.model.deleteLabel(menu.row) : ""
            keys: "Del"
            onTriggered: control.model.deleteFrom(menu.row)
        }
    }
}
