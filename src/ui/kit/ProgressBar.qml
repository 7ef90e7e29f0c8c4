import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// How far something is.
T.ProgressBar {
    id: control

    required property string name

    implicitWidth: Metrics.popoverWidth
    implicitHeight: Metrics.sliderTrack

    Accessible.role: Accessible.ProgressBar
    Accessible.name: control.name

    background: Rectangle {
        radius: height / 2
        color: Theme.sliderTrack
    }
    contentItem: Item {
        clip: true

        Item { // shows the beginning of a gradient that spans the whole track
            width: control.visualPosition * parent.width
            height: parent.height
            clip: true

            Rectangle {
                width: control.availableWidth
                height: parent.height
                radius: height / 2
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    GradientStop { position: 0; color: Theme.topicStart }
                    GradientStop { position: 1; color: Theme.topicEnd }
                }
            }
        }
    }
}
