import QtQuick
import Tonequill.Kit

// Settings of one subject: its title beside a card with rows.
Item {
    id: group

    default property alias rows: column.data
    required property string title

    implicitHeight: column.height

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Label {
        width: Metrics.settingsTitles
        y: (Metrics.row - height) / 2 + Metrics.hairline
        type: Metrics.label
        text: group.title
    }
    Rectangle {
        anchors.fill: column
        radius: Metrics.radiusCard
        color: Theme.buttonFill
    }
    Column {
        id: column
        x: Metrics.settingsTitles
        width: parent.width - x
    }
}
