import QtQuick
import Tonequill.Kit

// A word about a sound.
Rectangle {
    required property string text

    implicitWidth: label.implicitWidth + 2 * Metrics.spaceS
    implicitHeight: Metrics.tag
    radius: Metrics.radiusInner
    color: Theme.buttonFill

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Label {
        id: label
        anchors.centerIn: parent
        type: Metrics.caption
        color: Theme.textSecondary
        text: parent.text
    }
}
