import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A menu; its children are PopupMenuItems.
T.Menu {
    id: control

    property Item focusBefore: null // what gets the keyboard back

    onAboutToShow: focusBefore = parent ? parent.Window.activeFocusItem : null
    onClosed: {
        if (focusBefore)
            focusBefore.forceActiveFocus(Qt.PopupFocusReason);
    }

    implicitWidth: Metrics.menuWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: Metrics.spaceXs
    margins: Metrics.windowGap

    delegate: PopupMenuItem {}

    background: Rectangle {
        radius: Metrics.radiusControl
        color: Theme.popover
        border.width: Metrics.hairline
        border.color: Theme.isDark ? Theme.border : Theme.hairline

        Shadow {
            layers: Theme.popoverShadow
            radius: Metrics.radiusControl
        }
    }
    contentItem: ListView {
        id: list
        implicitHeight: contentHeight
        model: control.contentModel
        interactive: false
        currentIndex: control.currentIndex
    }
    enter: Transition {
        Ease { property: "opacity"; from: 0; to: 1; duration: Metrics.motionPress }
    }
    exit: Transition {
        Ease { property: "opacity"; from: 1; to: 0; duration: Metrics.motionPress }
    }
}
