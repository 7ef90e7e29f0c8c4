import QtQuick
import Tonequill.Kit

// The words at the foot of a card.
Item {
    id: note

    required property string text

    width: parent ? parent.width : 0
    height: label.height + 2 * Metrics.spaceS + Metrics.hairline

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Hairline {
        width: parent.width
    }
    Label {
        id: label
        x: Metrics.spaceL
        y: Metrics.spaceS + Metrics.hairline
        width: parent.width - 2 * x
        type: Metrics.caption
        wrapMode: Text.Wrap
        color: Theme.textSecondary
        text: note.text
        Accessible.ignored: true
    }
}
