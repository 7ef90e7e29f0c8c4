import QtQuick
import Tonequill.Kit

// Something goes on, and nobody knows for how long.
ArcItem {
    id: spinner

    implicitWidth: Metrics.iconSmall
    implicitHeight: Metrics.iconSmall
    color: Theme.accentInk
    trackColor: Theme.sliderTrack

    RotationAnimator on rotation {
        running: spinner.visible
        loops: Animation.Infinite
        from: 0
        to: 360
        duration: Metrics.spinner
    }
}
