pragma ComponentBehavior: Bound
import QtQuick
import Tonequill

// The open sound: what it is, and its wave.
Item {
    id: panel

    required property SoundView sound

    Item {
        id: header
        width: parent.width
        height: Metrics.button + Metrics.spaceXs + Metrics.tag

        Label {
            width: parent.width
            height: Metrics.button
            type: Metrics.title
            text: panel.sound.name
        }
        Item {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Metrics.tag

            NumberText {
                id: duration
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.caption
                color: Theme.textSecondary
                text: panel.sound.durationText
            }
            Label {
                id: dot
                visible: tags.count > 0
                anchors.left: duration.right
                anchors.leftMargin: Metrics.spaceS
                anchors.verticalCenter: parent.verticalCenter
                type: Metrics.caption
                color: Theme.textSecondary
                text: "·"
            }
            ListView {
                id: tags
                anchors.left: dot.right
                anchors.leftMargin: Metrics.spaceS
                anchors.right: license.left
                anchors.rightMargin: license.visible ? Metrics.spaceS : 0
                height: parent.height
                orientation: ListView.Horizontal
                boundsBehavior: Flickable.StopAtBounds
                spacing: Metrics.spaceS
                clip: true
                model: panel.sound.words
                delegate: Tag {
                    required property string modelData
                    text: modelData
                }
            }
            Row {
                id: license
                visible: panel.sound.license !== ""
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: Metrics.spaceS

                Accessible.role: Accessible.StaticText
                Accessible.name: panel.sound.needsCredit ? panel.sound.creditLine : panel.sound.license

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    width: Metrics.iconSmall
                    height: Metrics.iconSmall
                    name: "credit"
                    color: panel.sound.needsCredit ? Theme.warning : Theme.textSecondary
                }
                Label {
                    type: Metrics.caption
                    color: Theme.textSecondary
                    text: panel.sound.license
                }
            }
        }
    }

    InlineNotice {
        id: failure
        visible: panel.sound.errorText !== ""
        anchors.top: header.bottom
        anchors.topMargin: Metrics.spaceM
        width: parent.width
        text: panel.sound.errorText
    }

    Card {
        id: well
        visible: !failure.visible
        anchors.top: header.bottom
        anchors.topMargin: Metrics.spaceM
        anchors.bottom: parent.bottom
        width: parent.width
        isWell: true

        Accessible.role: Accessible.Graphic
        Accessible.name: "Waveform of " + panel.sound.name

        TimeRuler {
            id: ruler
            x: Metrics.hairline
            y: Metrics.hairline
            width: parent.width - 2 * x
            height: Metrics.ruler
            endSeconds: panel.sound.duration
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
        Item {
            anchors.top: line.bottom
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Metrics.hairline
            anchors.left: ruler.left
            anchors.right: ruler.right

            WaveformView {
                visible: !panel.sound.isLoading
                anchors.fill: parent
                anchors.topMargin: Metrics.spaceM
                anchors.bottomMargin: Metrics.spaceM
                envelope: panel.sound.envelope
                endSeconds: panel.sound.duration
                peakColor: Theme.waveOutside
                rmsColor: Theme.waveOutsideRms
            }
            Timer { // a short sound is there before anybody needs to be told
                id: patience
                running: panel.sound.isLoading
                interval: Metrics.motionStandard
            }
            Waiting {
                visible: panel.sound.isLoading && !patience.running
                anchors.fill: parent
                text: "Listening…"
            }
        }
    }
}
