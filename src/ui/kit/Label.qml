import QtQuick
import Tonequill.Kit

// A line of text in one of the styles of Metrics. It stays where it is in every
// script: right-to-left text reads so inside its place, and doesn't move it.
Text {
    property typeStyle type: Metrics.body

    height: wrapMode === Text.NoWrap ? type.line : implicitHeight
    color: Theme.textPrimary
    font.pixelSize: type.px
    font.weight: type.weight
    font.letterSpacing: type.letterSpacing
    horizontalAlignment: Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    lineHeight: wrapMode === Text.NoWrap ? 1 : type.line
    lineHeightMode: wrapMode === Text.NoWrap ? Text.ProportionalHeight : Text.FixedHeight
    elide: Text.ElideRight
    textFormat: Text.PlainText
}
