pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Wave
import Tonequill.Editor

// The open sound's wave: ruler, range, found parts, playhead.
Card {
    id: well

    required property SoundView sound
    readonly property alias stage: stage

    isWell: true

    Accessible.role: Accessible.Graphic
    Accessible.name: "Waveform of " + sound.name

    TimeRuler {
        id: ruler
        x: Metrics.hairline
        y: Metrics.hairline
        width: parent.width - 2 * x
        height: Metrics.ruler
        startSeconds: stage.startSeconds
        endSeconds: stage.endSeconds
        type: Metrics.caption
        textColor: Theme.textTertiary
        tickColor: Theme.border
    }
    Hairline {
        id: line
        anchors.top: ruler.bottom
        anchors.left: ruler.left
        anchors.right: ruler.right
    }
    WaveStage {
        id: stage
        anchors.top: line.bottom
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Metrics.hairline
        anchors.left: ruler.left
        anchors.right: ruler.right
        sound: well.sound

        PinchHandler {
            target: null
            onActiveChanged: stage.beginPinch()
            onActiveScaleChanged: stage.pinch(activeScale, centroid.position.x)
        }
        Item {
            visible: well.sound.isReady
            anchors.fill: parent

            Rectangle {
                x: stage.startX
                width: stage.endX - stage.startX
                height: parent.height
                color: Theme.waveRange
            }
            WaveformView {
                objectName: "wave"
                anchors.fill: parent
                anchors.topMargin: Metrics.spaceS
                anchors.bottomMargin: Metrics.spaceS
                envelope: well.sound.envelope
                startSeconds: stage.startSeconds
                endSeconds: stage.endSeconds
                rangeStart: well.sound.playback.start
                rangeEnd: well.sound.playback.end
                peakColor: Theme.waveOutside
                rmsColor: Theme.waveOutsideRms
                rangePeakColor: Theme.waveUnplayed
                rangeRmsColor: Theme.waveUnplayedRms
            }
            Item { // only its width changes while it plays
                visible: stage.hasPlayhead
                x: stage.startX
                width: Math.max(0, Math.round(stage.playheadX) - x)
                height: parent.height
                clip: true

                WaveformView {
                    x: -parent.x
                    y: Metrics.spaceS
                    width: stage.width
                    height: parent.height - 2 * y
                    envelope: well.sound.envelope
                    startSeconds: stage.startSeconds
                    endSeconds: stage.endSeconds
                    rangeStart: well.sound.playback.start
                    rangeEnd: well.sound.playback.end
                    rangePeakColor: Theme.wavePlayedStart
                    endColor: Theme.wavePlayedEnd
                }
            }
            Item { // the found parts
                anchors.fill: parent

                Repeater {
                    model: well.sound.parts

                    Rectangle {
                        required property real start
                        required property real end
                        required property bool marked
                        required property bool whole

                        z: marked ? 1 : 0 // parts may overlap
                        visible: !whole || marked
                        x: start * stage.pixelsPerSecond - stage.scrollX
                        y: stage.height - height - (scrollBar.visible ? scrollBar.height : Metrics.ribbon)
                        width: Math.max(radius, (end - start) * stage.pixelsPerSecond)
                        height: Metrics.ribbon
                        radius: height / 2
                        color: marked ? Theme.handle : Theme.control
                    }
                }
            }
            Rectangle {
                visible: stage.isHovered && stage.hoveredGrip === WaveStage.NoGrip
                x: Math.round(stage.hoverX)
                width: Metrics.hairline
                height: parent.height
                color: Theme.cursor
                opacity: Metrics.mutedRegion
            }
            Rectangle {
                visible: stage.cursorX >= 0
                x: Math.round(stage.cursorX)
                width: Metrics.hairline
                height: parent.height
                color: Theme.cursor
            }
            RangeHandle {
                id: startHandle
                objectName: "startHandle"
                name: "Start"
                valueText: well.sound.playback.startText
                seconds: well.sound.playback.start
                duration: well.sound.duration
                at: Math.round(stage.startX)
                onMoved: by => well.sound.playback.moveStart(by)
            }
            RangeHandle {
                objectName: "endHandle"
                name: "End"
                valueText: well.sound.playback.endText
                seconds: well.sound.playback.end
                duration: well.sound.duration
                at: Math.round(stage.endX)
                onMoved: by => well.sound.playback.moveEnd(by)
            }
            Rectangle {
                objectName: "lengthPill"
                visible: stage.endX > 0 && stage.startX < stage.width
                x: Math.round(stage.pillX(width, stage.startX, stage.endX))
                y: parent.height - height - Metrics.spaceL - Metrics.focusGap / 2
                width: lengthLabel.width + 2 * Metrics.spaceS - 1
                height: Metrics.tag
                radius: Metrics.radiusInner
                color: Theme.handle

                NumberText {
                    id: lengthLabel
                    anchors.centerIn: parent
                    type: Metrics.captionStrong
                    color: Theme.handleGrip
                    text: well.sound.playback.lengthText
                }
            }
        }
        Rectangle { // it runs before there is a wave, too
            visible: stage.hasPlayhead
            x: Math.round(stage.playheadX) - width / 2
            width: Metrics.strokePlayhead
            height: parent.height
            color: Theme.playhead
        }
        HoverTime { // over every line, so that none runs through its digits
            visible: well.sound.isReady && stage.isHovered && stage.hoveredGrip === WaveStage.NoGrip
            x: Math.max(Metrics.spaceXs, Math.min(parent.width - width - Metrics.spaceXs, Math.round(stage.hoverX - width / 2)))
            y: Metrics.spaceXs
            text: stage.hoverText
        }
        ScrollThumb {
            id: scrollBar
            objectName: "waveScrollBar"
            visible: stage.isScrollable
            isSteady: true
            orientation: Qt.Horizontal
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            size: stage.visibleShare
            position: stage.scrollShare
            onPositionChanged: {
                if (pressed)
                    stage.scrollToShare(position);
            }
        }
        Timer { // a short sound is there before anybody needs to be told
            id: patience
            running: well.sound.isLoading
            interval: Metrics.motionStandard
        }
        Waiting {
            visible: well.sound.isLoading && !patience.running
            anchors.fill: parent
            text: "Listening…"
            progress: well.sound.progress
        }
    }
    PlayheadCap {
        x: stage.x + Math.round(stage.playheadX) - width / 2
        visible: stage.hasPlayhead && x > 0 && x + width < parent.width
        anchors.bottom: line.bottom
        width: Metrics.handle
        height: Metrics.spaceS
        color: Theme.playhead
    }
}
