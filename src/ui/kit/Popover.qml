import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A surface that hangs from its parent, a button, and points at it. Another press
// of the button closes it, as Escape and a press elsewhere do.
T.Popup {
    id: control

    required property string name
    required property T.AbstractButton button
    property bool byKeys: false // what opened it, and what the focus returns with

    readonly property real arrow: Metrics.spaceS // how far it stands out

    parent: button
    x: Math.round((button.width - width) / 2)
    y: button.height + arrow + Metrics.focusGap
    margins: Metrics.windowGap
    padding: Metrics.spaceL
    implicitWidth: Metrics.popoverWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    onAboutToShow: byKeys = button.visualFocus
    onClosed: {
        const now = button.Window.activeFocusItem; // a press elsewhere has given the keys away already
        if (!now || now === button.Window.contentItem)
            button.forceActiveFocus(byKeys ? Qt.ShortcutFocusReason : Qt.PopupFocusReason); // no Tab: its tip isn't asked for
    }

    background: Rectangle {
        radius: Metrics.radiusCard
        color: Theme.popover
        border.width: Metrics.hairline
        border.color: Theme.isDark ? Theme.border : Theme.hairline

        Accessible.role: Accessible.Dialog
        Accessible.name: control.name

        Shadow {
            layers: Theme.popoverShadow
        }
        Rectangle { // half of it stands out
            x: control.button.width / 2 - control.x - width / 2
            y: -height / 2
            width: Math.round(control.arrow * Math.SQRT2)
            height: width
            rotation: 45
            antialiasing: true
            color: parent.color
            border.width: Metrics.hairline
            border.color: Theme.isDark ? Theme.border : Theme.hairline
        }
        Rectangle { // over the other half
            anchors.fill: parent
            anchors.margins: Metrics.hairline
            radius: parent.radius - Metrics.hairline
            color: parent.color
        }
    }
    enter: Transition {
        Ease { property: "opacity"; from: 0; to: 1; duration: Metrics.motionHover }
    }
    exit: Transition {
        Ease { property: "opacity"; from: 1; to: 0; duration: Metrics.motionHover }
    }
}
