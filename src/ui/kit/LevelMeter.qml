import QtQuick
import Tonequill.Kit

// How loud it is, from quiet on the left to too loud on the right.
Rectangle {
    id: meter

    required property real level // 0…1

    implicitWidth: Metrics.meterWidth
    implicitHeight: Metrics.meter
    radius: height / 2
    color: Theme.meterTrack

    Accessible.role: Accessible.Indicator
    Accessible.name: "Level"

    Item { // shows the beginning of a ramp that spans the whole meter
        width: Math.round(meter.level * parent.width)
        height: parent.height
        clip: true

        Rectangle {
            width: meter.width
            height: parent.height
            radius: height / 2
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: Theme.meterLow }
                GradientStop { position: 0.7; color: Theme.meterLow }
                GradientStop { position: 0.85; color: Theme.meterMid }
                GradientStop { position: 1; color: Theme.meterHigh }
            }
        }
    }
}
