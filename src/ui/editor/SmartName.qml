pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit
import Tonequill.Editor

// A name for the open sound: it is asked for, and then used or not. One button
// all the way, so that the keyboard stays where it is.
Item {
    id: control

    required property SoundView sound

    readonly property bool hasName: sound.suggestedName !== ""
    readonly property color ink: hasName ? Theme.accentSoftText : Theme.textSecondary

    implicitWidth: main.implicitWidth + (dismiss.visible ? dismiss.width : 0)

    function press() {
        if (hasName)
            sound.useSuggestion();
        else
            sound.suggestName();
    }

    function forget() {
        sound.dismissSuggestion();
        main.forceActiveFocus(Qt.OtherFocusReason);
    }

    Rectangle {
        visible: control.sound.hasSuggestion
        anchors.fill: parent
        anchors.topMargin: (parent.height - Metrics.buttonSmall) / 2
        anchors.bottomMargin: anchors.topMargin
        radius: Metrics.radiusControl
        color: control.hasName ? Theme.accentSoft : Theme.buttonFill
    }
    T.Button {
        id: main
        objectName: "smartNameButton"

        readonly property string tip: {
            if (control.sound.isThinking)
                return "";
            if (!control.sound.hasSuggestion)
                return "Suggest a name";
            if (!control.hasName)
                return "Try again";
            return control.sound.suggestedTags === "" ? "Use this name" : "Use this name and add the tags " + control.sound.suggestedTags;
        }

        width: parent.width - (dismiss.visible ? dismiss.width : 0)
        height: parent.height
        implicitWidth: control.sound.hasSuggestion ? content.implicitWidth + 2 * Metrics.spaceS : Metrics.hitTarget
        topInset: (height - Metrics.buttonSmall) / 2
        bottomInset: topInset
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        onClicked: control.press()
        Keys.onReturnPressed: event => {
            if (!event.isAutoRepeat) // a key that is held is one wish
                control.press();
        }
        Keys.onEnterPressed: event => {
            if (!event.isAutoRepeat)
                control.press();
        }
        Keys.onEscapePressed: event => {
            event.accepted = control.sound.hasSuggestion;
            if (event.accepted)
                control.forget();
        }

        Accessible.role: Accessible.Button
        Accessible.name: {
            if (control.sound.isThinking)
                return "Thinking…";
            return control.hasName ? "Use the name " + control.sound.suggestedName : control.sound.hasSuggestion ? words.text : tip;
        }
        Accessible.description: control.sound.hasSuggestion ? tip : ""
        Accessible.onPressAction: control.press()

        background: Rectangle {
            radius: Metrics.radiusControl
            color: {
                if (control.hasName)
                    return main.down || main.hovered ? Theme.accentSoftHover : "transparent";
                return main.down ? Theme.buttonPressed : main.hovered && !control.sound.isThinking ? Theme.buttonHover : "transparent";
            }

            Behavior on color {
                Fade {}
            }
            FocusRing {
                visible: main.visualFocus
            }
        }
        contentItem: Item {
            id: content
            implicitWidth: Metrics.iconSmall + Metrics.spaceXs + words.implicitWidth + use.width

            Icon {
                id: icon
                visible: !control.sound.isThinking
                x: control.sound.hasSuggestion ? Metrics.spaceS : (parent.width - width) / 2
                anchors.verticalCenter: parent.verticalCenter
                width: Metrics.iconSmall
                height: Metrics.iconSmall
                name: "sparkle"
                color: control.hasName ? Theme.accentSoftText : main.hovered ? Theme.textPrimary : Theme.textSecondary
            }
            OnDemand {
                isWanted: control.sound.isThinking

                Spinner {
                    anchors.centerIn: icon
                }
            }
            Label {
                id: words
                visible: control.sound.hasSuggestion
                anchors.left: icon.right
                anchors.leftMargin: Metrics.spaceXs
                anchors.right: use.left
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.bodyStrong
                color: control.ink
                text: control.hasName ? control.sound.suggestedName : "Not sure what this is"
            }
            Item {
                id: use
                visible: control.hasName
                anchors.right: parent.right
                anchors.rightMargin: Metrics.spaceS
                anchors.verticalCenter: parent.verticalCenter
                width: control.hasName ? useLabel.implicitWidth + 2 * Metrics.spaceS : 0
                height: Metrics.iconSmall

                Rectangle {
                    x: Metrics.spaceS
                    width: Metrics.hairline
                    height: parent.height
                    color: Theme.accentSoftText
                    opacity: Metrics.disabledGraphic
                }
                Label {
                    id: useLabel
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    type: Metrics.label
                    color: Theme.accentSoftText
                    text: "Use"
                }
            }
        }

        Tip {
            control: main
            text: main.tip
        }
    }
    IconButton {
        id: dismiss
        objectName: "dismissName"
        visible: control.sound.hasSuggestion
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        iconName: "close"
        text: "Dismiss"
        onClicked: control.forget()
        Keys.onEscapePressed: control.forget()
    }
}
