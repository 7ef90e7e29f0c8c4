import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit
import Tonequill.Editor

// Plays the range: the one button in ink.
T.Button {
    id: control

    required property PlaybackView playback

    implicitWidth: Metrics.play
    implicitHeight: Metrics.play
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    text: playback.isPlaying ? "Stop" : "Play"
    onClicked: playback.toggle()
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

    background: Rectangle {
        radius: width / 2
        color: Theme.textPrimary
        opacity: !control.enabled ? Metrics.disabledGraphic : control.down ? 0.8 : control.hovered ? 0.9 : 1

        FocusRing {
            visible: control.visualFocus
            around: parent.radius
        }
    }
    contentItem: Item {
        Icon {
            visible: !control.playback.isRendering
            anchors.centerIn: parent
            width: Metrics.icon
            height: Metrics.icon
            name: control.playback.isPlaying ? "pause-solid" : "play-solid"
            color: Theme.windowBase
        }
        Spinner {
            visible: control.playback.isRendering
            anchors.centerIn: parent
            width: Metrics.icon
            height: Metrics.icon
            color: Theme.windowBase
            trackColor: "transparent"
        }
    }

    Tip {
        control: control
        text: control.playback.isRendering ? "Stop rendering" : control.text
        keys: "Space"
    }
}
