import QtQuick
import Tonequill

// A surface inside a panel: raised, or sunk as a well.
Rectangle {
    property bool isWell: false

    radius: Metrics.radiusControl
    color: isWell ? Theme.well : Theme.card
    border.width: Metrics.hairline
    border.color: isWell && Theme.isDark ? Theme.border : Theme.hairline
}
