pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Wave

// One row of the library: a sound, or a file that is coming in.
ListRow {
    id: row

    required property int index
    required property string name
    required property string subtitle
    required property levels levels
    required property bool isIncoming
    required property string credit
    required property bool isBeingNamed
    readonly property bool isBusy: isIncoming || isBeingNamed

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + subtitle
    Accessible.description: credit
    Accessible.selectable: !isIncoming
    Accessible.selected: isSelected

    WaveThumbnail {
        visible: !row.isIncoming
        anchors.verticalCenter: parent.verticalCenter
        width: Metrics.thumbnailWidth
        height: Metrics.thumbnailHeight
        levels: row.levels
        color: row.isSelected && row.isListFocused ? Theme.waveUnplayedRms : row.isSelected || row.isHovered ? Theme.control : Theme.waveOutside
    }
    OnDemand {
        isWanted: row.isIncoming

        Shimmer {
            y: (row.height - height) / 2
            width: Metrics.thumbnailWidth
            height: Metrics.thumbnailHeight
        }
    }
    Label {
        id: nameLabel
        anchors.left: parent.left
        anchors.leftMargin: Metrics.thumbnailWidth + Metrics.spaceM
        anchors.right: mark.left
        y: (parent.height - height - subtitleLabel.height) / 2
        type: Metrics.bodyStrong
        text: row.name
    }
    WholeText {
        objectName: "wholeName"
        label: nameLabel
        isOver: row.isHovered
    }
    Label {
        id: subtitleLabel
        anchors.left: nameLabel.left
        anchors.right: nameLabel.right
        anchors.top: nameLabel.bottom
        type: Metrics.caption
        color: Theme.textSecondary
        text: row.subtitle
    }
    Item {
        id: mark
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: row.isBusy || row.credit !== "" ? Metrics.iconSmall + Metrics.spaceS : 0
        height: Metrics.iconSmall

        Icon {
            anchors.right: parent.right
            visible: row.credit !== "" && !row.isBusy
            width: Metrics.iconSmall
            height: Metrics.iconSmall
            name: "credit"
            color: Theme.textSecondary
        }
        OnDemand {
            isWanted: row.isBusy

            Spinner {
                anchors.right: mark.right
            }
        }
    }
}
