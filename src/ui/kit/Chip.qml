import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A proposal that can be picked, with a detail such as its length.
T.AbstractButton {
    id: control

    property string iconName: ""
    property string detail: ""
    property string tip: ""
    property bool isPicked: false
    property bool isCompact: false // the icon only; the words become the tip
    property bool isLeftAligned: false
    property string reservedText: "" // the text's room is this one's, and doesn't change with the text
    property bool isStop: true // of the Tab key, in an ArrowGroup

    property int held: Qt.NoModifier // while it was pressed

    signal picked(modifiers: int)

    implicitWidth: isCompact ? Metrics.chip : row.implicitWidth + leftPadding + rightPadding
    implicitHeight: Metrics.chip
    horizontalPadding: Metrics.spaceS
    focusPolicy: isStop || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
    hoverEnabled: true
    onClicked: picked(held)
    Keys.onSpacePressed: event => { // Space alone is the window's
        if (!event.isAutoRepeat)
            picked(event.modifiers);
    }
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            picked(event.modifiers);
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            picked(event.modifiers);
    }

    Accessible.role: Accessible.Button
    Accessible.name: detail === "" ? text : text + ", " + detail
    Accessible.selected: isPicked

    background: Rectangle {
        radius: Metrics.radiusChip
        color: {
            if (control.isPicked)
                return control.hovered ? Theme.accentSoftHover : Theme.accentSoft;
            return control.down ? Theme.buttonPressed : control.hovered && control.enabled ? Theme.buttonHover : Theme.buttonFill;
        }
        // Whole pixels, as OpenGL rounds it: without OpenGL two sides would lose theirs.
        border.width: control.isPicked ? Math.round(Metrics.strokeControl) : 0
        border.color: Theme.accentInk

        Behavior on color {
            Fade {}
        }
        FocusRing {
            visible: control.visualFocus
            around: Metrics.radiusChip
        }
    }
    contentItem: Item {
        Row {
            id: row
            anchors.verticalCenter: parent.verticalCenter
            // No anchor that comes and goes: one that is let go leaves the row where it was.
            x: control.isLeftAligned && !control.isCompact ? 0 : Math.round((parent.width - width) / 2)
            spacing: control.isLeftAligned ? Metrics.spaceXs : Metrics.spaceS

            Icon {
                visible: control.iconName !== ""
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                anchors.verticalCenter: parent.verticalCenter
                name: control.iconName
                color: control.isPicked ? Theme.accentSoftText : Theme.textPrimary
                opacity: control.enabled ? 1 : Metrics.disabledGraphic
            }
            Label {
                id: words
                visible: !control.isCompact
                width: control.reservedText === "" ? implicitWidth : Math.ceil(reserved.implicitWidth)
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.bodyStrong
                color: !control.enabled ? Theme.textDisabled : control.isPicked ? Theme.accentSoftText : Theme.textPrimary
                text: control.text
            }
            NumberText {
                visible: text !== ""
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.body
                color: !control.enabled ? Theme.textDisabled : control.isPicked ? Theme.accentSoftText : Theme.textSecondary
                text: control.detail
            }
        }
    }

    Label {
        id: reserved
        visible: false
        type: Metrics.bodyStrong
        text: control.reservedText
    }
    TapHandler { // a button's own click doesn't tell
        onPressedChanged: {
            if (pressed)
                control.held = point.modifiers | Qt.NoModifier;
        }
    }
    Tip {
        control: control
        text: control.tip !== "" ? control.tip : control.isCompact || words.truncated ? control.text : ""
    }
}
