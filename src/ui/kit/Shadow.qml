import QtQuick
import Tonequill

// The drop shadow of its parent.
ShadowImage {
    radius: Metrics.radiusCard
    anchors.fill: parent
    anchors.margins: -margin
}
