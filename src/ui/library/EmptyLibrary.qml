pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Library

// What a library without sounds has to say.
Item {
    id: surface

    required property LibraryFiles files

    signal soundsWanted // free ones, from elsewhere

    Column {
        anchors.centerIn: parent
        width: Metrics.textWidth

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            height: Metrics.barHeight
            spacing: Metrics.barPitch - Metrics.bar

            Repeater {
                id: bars
                // A sound that rises and dies away; decoration only.
                model: [0.1, 0.15, 0.12, 0.22, 0.35, 0.27, 0.5, 0.41, 0.7, 0.95, 0.77, 1, 0.62, 0.84, 0.54, 0.67, 0.39,
                    0.51, 0.29, 0.37, 0.24, 0.17, 0.25, 0.13, 0.17, 0.1, 0.08, 0.07]

                Rectangle {
                    required property real modelData
                    required property int index
                    readonly property real at: index / (bars.count - 1)
                    readonly property color from: Theme.wavePlayedStart
                    readonly property color to: Theme.wavePlayedEnd

                    y: (Metrics.barHeight - height) / 2
                    width: Metrics.bar
                    height: Math.max(width, 2 * Math.round(modelData * Metrics.barHeight / 2))
                    radius: width / 2
                    color: Qt.rgba(from.r + (to.r - from.r) * at, from.g + (to.g - from.g) * at, from.b + (to.b - from.b) * at, 1)
                }
            }
        }
        Item {
            width: parent.width
            height: Metrics.spaceXl
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            type: Metrics.title
            text: "Your Library Is Empty"
        }
        Item {
            width: parent.width
            height: Metrics.spaceS
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            color: Theme.textSecondary
            text: "Drop in a video or sound, or find free effects and save the ones you like."
        }
        Item {
            width: parent.width
            height: Metrics.spaceXl
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Metrics.spaceS

            ActionButton {
                iconName: "folder"
                text: "Choose Files…"
                onClicked: surface.files.choose()
            }
            ActionButton {
                kind: ActionButton.Accent
                iconName: "discover"
                text: "Find Free Sounds"
                onClicked: surface.soundsWanted()
            }
        }
    }
}
