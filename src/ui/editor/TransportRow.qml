import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// Plays the range, tells what it is and what it sounds like, and zooms the wave.
Item {
    id: transport

    required property SoundView sound
    required property WaveStage stage
    required property bool isNarrow
    readonly property real meterWidth: isNarrow ? Metrics.hitTarget : Metrics.meterWidth
    readonly property bool isHeard: sound.playback.isPlaying && !sound.playback.isRendering

    height: Metrics.play

    Shortcut {
        sequence: "Ctrl+-"
        onActivated: transport.stage.zoomOut()
    }
    Shortcut {
        sequences: ["Ctrl++", "Ctrl+="]
        onActivated: transport.stage.zoomIn()
    }
    Shortcut {
        sequence: "Ctrl+9"
        onActivated: transport.stage.zoomToSelection()
    }
    Shortcut {
        sequence: "Ctrl+0"
        onActivated: transport.stage.showWhole()
    }
    PlayButton {
        id: play
        objectName: "playButton"
        playback: transport.sound.playback
        enabled: transport.sound.playback.canPlay
    }
    IconButton {
        id: loop
        objectName: "loopButton"
        anchors.left: play.right
        anchors.leftMargin: Metrics.spaceXs
        anchors.verticalCenter: parent.verticalCenter
        checkable: true
        checked: transport.sound.playback.loop
        iconName: "loop"
        text: "Loop"
        onToggled: transport.sound.playback.loop = checked
    }
    Row {
        id: times
        anchors.left: loop.right
        anchors.leftMargin: Metrics.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Metrics.spaceXs

        Accessible.role: Accessible.StaticText
        Accessible.name: "From " + transport.sound.playback.startText + " to " + transport.sound.playback.endText

        NumberText { // the time runs while it plays
            objectName: "place"
            type: Metrics.body
            color: transport.isHeard ? Theme.accentInk : Theme.textPrimary
            text: transport.isHeard ? transport.sound.playback.placeText : transport.sound.playback.startText
        }
        Label {
            width: Metrics.spaceS
            horizontalAlignment: Text.AlignHCenter
            color: Theme.textTertiary
            text: transport.isHeard ? "/" : "–"
        }
        NumberText {
            type: Metrics.body
            color: Theme.textPrimary
            text: transport.sound.playback.endText
        }
    }
    Icon {
        id: ear
        visible: headline.text !== ""
        anchors.left: times.right
        anchors.leftMargin: Metrics.spaceM
        anchors.verticalCenter: parent.verticalCenter
        width: Metrics.iconSmall
        height: Metrics.iconSmall
        name: "waveform"
        color: Theme.accentInk
    }
    Label {
        id: headline
        objectName: "headline"
        anchors.left: ear.right
        anchors.leftMargin: Metrics.spaceS
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, Math.max(0, right.x - x - Metrics.spaceS))
        type: Metrics.bodyStrong
        text: transport.sound.headline

        HoverHandler {
            id: overHeadline
        }

        Accessible.role: Accessible.StaticText
        Accessible.name: text
        Accessible.ignored: text === ""
    }
    WholeText {
        label: headline
        isOver: overHeadline.hovered
    }
    Label {
        id: summary
        objectName: "summary"
        anchors.left: headline.right
        anchors.leftMargin: Metrics.spaceS
        anchors.right: right.left
        anchors.rightMargin: Metrics.spaceS
        anchors.verticalCenter: parent.verticalCenter
        // A few letters tell nothing; it is read out all the same.
        color: width > Metrics.spaceXl * 3 ? Theme.textSecondary : "transparent"
        text: transport.sound.summary

        HoverHandler {
            id: overSummary
        }

        Accessible.role: Accessible.StaticText
        Accessible.name: text
        Accessible.ignored: text === ""
    }
    WholeText {
        label: summary
        isOver: overSummary.hovered
    }
    Row {
        id: right
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Metrics.spaceXs

        LevelMeter {
            objectName: "levelMeter"
            visible: transport.isHeard
            anchors.verticalCenter: parent.verticalCenter
            width: transport.meterWidth
            level: transport.sound.playback.level
        }
        ProgressBar {
            visible: transport.sound.playback.isRendering
            anchors.verticalCenter: parent.verticalCenter
            width: transport.meterWidth
            name: "Rendering effects"
            value: transport.sound.playback.renderProgress
        }
        IconButton {
            objectName: "zoomOutButton"
            enabled: transport.stage.zoom > 1
            iconName: "zoom-out"
            text: "Zoom out"
            keys: "Ctrl+-"
            onClicked: transport.stage.zoomOut()
        }
        IconButton {
            objectName: "zoomInButton"
            enabled: transport.stage.canZoomIn
            iconName: "zoom-in"
            text: "Zoom in (or pinch)"
            keys: "Ctrl++"
            onClicked: transport.stage.zoomIn()
        }
        IconButton {
            objectName: "zoomSelectionButton"
            iconName: "zoom-selection"
            text: "Zoom to the selected part"
            keys: "Ctrl+9"
            onClicked: transport.stage.zoomToSelection()
        }
        IconButton {
            objectName: "showWholeButton"
            iconName: "zoom-fit"
            text: "Show the whole sound"
            keys: "Ctrl+0"
            onClicked: transport.stage.showWhole()
        }
    }
}
