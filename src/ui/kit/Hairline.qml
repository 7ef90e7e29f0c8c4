import QtQuick
import Tonequill.Kit

Rectangle {
    height: Metrics.hairline
    color: Theme.hairline
}
