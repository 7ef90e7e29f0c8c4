import QtQuick
import Tonequill.Kit

// Shows the whole text of a label that is cut short, while the pointer rests over it.
Tip {
    required property Text label
    required property bool isOver

    control: label
    isWanted: isOver && label.truncated
    text: label.text
}
