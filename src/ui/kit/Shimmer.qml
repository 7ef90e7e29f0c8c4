import QtQuick
import Tonequill.Kit

// Stands where a result will be.
Rectangle {
    id: shimmer

    radius: Metrics.radiusThumbnail
    color: Theme.buttonFill

    SequentialAnimation on opacity {
        running: shimmer.visible
        loops: Animation.Infinite
        Ease { from: 1; to: Metrics.disabledGraphic; duration: Metrics.loadingShimmer / 2 }
        Ease { from: Metrics.disabledGraphic; to: 1; duration: Metrics.loadingShimmer / 2 }
    }
}
