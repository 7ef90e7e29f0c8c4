import QtQuick
import Tonequill.Kit

// Words that stay beside what failed.
Rectangle {
    id: notice

    required property string text
    property bool isWarning: false // recoverable, or the user's to decide
    property string iconName: "warning"
    property color ink: isWarning ? Theme.warningText : Theme.dangerText
    property alias maximumLineCount: label.maximumLineCount

    implicitHeight: label.implicitHeight + 2 * Metrics.spaceM
    radius: Metrics.radiusControl
    color: isWarning ? Theme.warningSoft : Theme.dangerSoft

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Icon {
        id: icon
        x: Metrics.spaceM
        y: Metrics.spaceM
        width: Metrics.iconSmall
        height: Metrics.iconSmall
        name: notice.iconName
        color: notice.ink
    }
    Paragraph {
        id: label
        anchors.left: icon.right
        anchors.leftMargin: Metrics.spaceS
        anchors.right: parent.right
        anchors.rightMargin: Metrics.spaceM
        anchors.verticalCenter: parent.verticalCenter
        color: notice.ink
        text: notice.text
    }
}
