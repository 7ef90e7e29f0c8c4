import QtQuick
import Tonequill.Kit

// A section without content.
Panel {
    id: section

    required property string iconName
    required property string title

    EmptyState {
        anchors.centerIn: parent
        iconName: section.iconName
        title: section.title
        text: "Nothing here yet."
    }
}
