import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A dialogue over the window, with a title.
T.Popup {
    id: control

    required property string title
    property Item focusBefore: null // what gets the keyboard back

    onAboutToShow: focusBefore = parent ? parent.Window.activeFocusItem : null
    onClosed: {
        if (focusBefore)
            focusBefore.forceActiveFocus(Qt.PopupFocusReason);
    }

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    implicitWidth: Metrics.sheetWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: Metrics.spaceXl
    topPadding: Metrics.spaceXl + Metrics.title.line + Metrics.spaceM
    margins: Metrics.spaceXl
    modal: true
    focus: true

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: Rectangle {
        radius: Metrics.radiusCard
        color: Theme.popover
        border.width: Theme.isDark ? Metrics.hairline : 0
        border.color: Theme.border

        Accessible.role: Accessible.Dialog
        Accessible.name: control.title

        Shadow {
            layers: Theme.popoverShadow
        }
        Label {
            x: Metrics.spaceXl
            y: Metrics.spaceXl
            width: parent.width - 2 * Metrics.spaceXl
            type: Metrics.title
            text: control.title
        }
    }
    enter: Transition {
        Ease { property: "opacity"; from: 0; to: 1 }
    }
    exit: Transition {
        Ease { property: "opacity"; from: 1; to: 0 }
    }
}
