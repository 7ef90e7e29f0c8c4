pragma ComponentBehavior: Bound
import QtQuick
import QtQml.Models
import QtQuick.Templates as T
import Tonequill.Kit

// The help text of a control, with its key. It is made when the pointer rests on the
// control or the Tab key has come there, and goes when the control is used, until
// then comes again.
Instantiator {
    id: tip

    required property Item control
    required property string text
    property string keys: ""
    property bool isWanted: {
        const button = control as T.Control;
        if (button === null)
            return false;
        const isByKeys = button.focusReason === Qt.TabFocusReason || button.focusReason === Qt.BacktabFocusReason;
        return button.hovered || (button.visualFocus && isByKeys);
    }
    property bool isUsed: false // since it was wanted

    readonly property Connections use: Connections {
        target: tip.control as T.AbstractButton
        ignoreUnknownSignals: true
        function onPressedChanged() {
            tip.isUsed = true;
        }
        function onClicked() {
            tip.isUsed = true;
        }
    }

    active: text !== "" && isWanted && !isUsed && control.visible
    onIsWantedChanged: {
        if (!isWanted)
            isUsed = false;
    }

    delegate: T.ToolTip {
        id: popup
        parent: tip.control
        x: Math.round((tip.control.width - width) / 2)
        y: tip.control.height + Metrics.spaceXs
        implicitWidth: words.implicitWidth + leftPadding + rightPadding
        implicitHeight: words.implicitHeight + topPadding + bottomPadding
        margins: Metrics.windowGap
        horizontalPadding: Metrics.spaceM
        verticalPadding: Metrics.spaceS
        delay: Metrics.tooltipDelay
        visible: true
        closePolicy: T.Popup.NoAutoClose

        background: Rectangle {
            radius: Metrics.radiusControl
            color: Theme.popover
            border.width: Metrics.hairline
            border.color: Theme.border

            Shadow {
                layers: Theme.controlShadow
                radius: Metrics.radiusControl
            }
        }
        contentItem: Row {
            id: words
            spacing: Metrics.spaceM

            Label {
                width: Math.min(implicitWidth, Metrics.textWidth)
                type: Metrics.caption
                wrapMode: Text.Wrap
                text: tip.text
            }
            Label {
                visible: text !== ""
                type: Metrics.caption
                color: Theme.textTertiary
                text: tip.keys
            }
        }
    }
}
