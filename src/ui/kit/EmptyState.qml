import QtQuick
import Tonequill.Kit

// A calm sentence where nothing is.
Column {
    id: state

    required property string iconName
    required property string text
    property string title: ""

    width: Metrics.textWidth
    spacing: Metrics.spaceM

    Icon {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Metrics.spaceXl
        height: Metrics.spaceXl
        name: state.iconName
        color: Theme.textSecondary
    }
    Paragraph {
        visible: state.title !== ""
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        maximumLineCount: 3 // it may quote what the user typed
        type: Metrics.heading
        text: state.title
    }
    Label {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: state.title === "" ? Theme.textPrimary : Theme.textSecondary
        text: state.text
    }
}
