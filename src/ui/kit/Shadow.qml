import QtQuick
import Tonequill.Kit

// The drop shadow of its parent.
ShadowImage {
    radius: Metrics.radiusCard
    anchors.fill: parent
    anchors.margins: -margin
}
