pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A button with words. While it is loading, a spinner stands in the icon's place.
T.Button {
    id: control

    enum Kind {
        Plain,
        Accent, // the one action of a screen
        Toolbar,
        Raised // on a card
    }

    property int kind: ActionButton.Plain
    property string iconName: ""
    property bool isLoading: false
    property bool isOn: false // what it opens is there
    property bool isCompact: false // the icon only; the words become the tip
    property bool isSmall: false
    property string trailingIconName: ""
    property real maximumTextWidth: Infinity
    property string tip: ""
    property string keys: ""

    readonly property bool isAccent: kind === ActionButton.Accent && enabled
    readonly property color ink: !enabled ? Theme.textDisabled : isAccent ? Theme.accentText : isOn ? Theme.accentSoftText : Theme.textPrimary

    implicitHeight: isSmall ? Metrics.hitTarget : Metrics.button
    topInset: isSmall ? (Metrics.hitTarget - Metrics.buttonSmall) / 2 : 0 // smaller to look at than to hit
    bottomInset: topInset
    implicitWidth: isCompact ? implicitHeight : row.implicitWidth + leftPadding + rightPadding
    horizontalPadding: isCompact ? 0 : isSmall ? Metrics.spaceS : Metrics.spaceM
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat) // a key that is held is one wish
            control.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            control.clicked();
    }

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: tip

    background: Rectangle {
        radius: Metrics.radiusControl
        color: {
            if (control.isAccent)
                return control.down ? Theme.accentPressed : control.hovered ? Theme.accentHover : Theme.accent;
            if (control.isOn)
                return control.hovered ? Theme.accentSoftHover : Theme.accentSoft;
            if (control.kind === ActionButton.Toolbar)
                return control.down ? Theme.buttonPressed : control.hovered ? Theme.toolbarButtonHover : Theme.toolbarButton;
            if (control.kind === ActionButton.Raised && !Theme.isDark)
                return Qt.tint(Theme.raised, control.down ? Theme.buttonHover : control.hovered ? Theme.buttonFill : "transparent");
            return control.down ? Theme.buttonPressed : control.hovered && control.enabled ? Theme.buttonHover : Theme.buttonFill;
        }

        Behavior on color {
            Fade {
                duration: control.down ? Metrics.motionPress : Metrics.motionHover
            }
        }
        Shadow {
            visible: control.kind === ActionButton.Raised
            layers: Theme.controlShadow
            radius: Metrics.radiusControl
        }
        FocusRing {
            visible: control.visualFocus
        }
    }

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Metrics.spaceS

            Item {
                visible: control.iconName !== "" || control.isLoading
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                anchors.verticalCenter: parent.verticalCenter

                Icon {
                    anchors.fill: parent
                    visible: !control.isLoading
                    name: control.iconName
                    color: control.enabled ? control.ink : Theme.textPrimary
                    opacity: control.enabled ? 1 : Metrics.disabledGraphic
                }
                Spinner {
                    anchors.fill: parent
                    visible: control.isLoading
                    color: control.isAccent ? Theme.accentText : Theme.accentInk
                }
            }
            Label {
                visible: !control.isCompact
                width: Math.min(implicitWidth, control.maximumTextWidth)
                anchors.verticalCenter: parent.verticalCenter
                type: control.isSmall ? Metrics.captionStrong : control.kind === ActionButton.Accent ? Metrics.label : Metrics.bodyStrong
                color: control.ink
                text: control.text
            }
            Icon {
                visible: control.trailingIconName !== ""
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                anchors.verticalCenter: parent.verticalCenter
                name: control.trailingIconName
                color: control.ink
            }
        }
    }

    Tip {
        control: control
        text: control.isOn ? "" : control.tip !== "" ? control.tip : control.isCompact || control.keys !== "" ? control.text : ""
        keys: control.keys
    }
}
