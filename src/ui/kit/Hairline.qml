import QtQuick
import Tonequill

Rectangle {
    height: Metrics.hairline
    color: Theme.hairline
}
