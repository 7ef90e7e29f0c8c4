pragma ComponentBehavior: Bound
import QtQuick
import Tonequill

// The drop shadow of its parent.
Item {
    id: shadow

    required property list<shadowLayer> layers
    property real radius: Metrics.radiusCard

    anchors.fill: parent

    Repeater {
        model: shadow.layers

        BorderImage {
            required property shadowLayer modelData

            readonly property real edge: 2 * modelData.margin + Math.ceil(shadow.radius)

            anchors.fill: parent
            anchors.margins: -modelData.margin
            border { left: edge; top: edge; right: edge; bottom: edge }
            source: "image://shadow/" + modelData.blur + "/" + modelData.y + "/" + shadow.radius + "/"
                    + String(modelData.color).slice(1)
        }
    }
}
