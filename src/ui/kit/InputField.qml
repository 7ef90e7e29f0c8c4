import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A line of text to type. `name` is what it is for.
T.TextField {
    id: control

    required property string name
    property bool hasError: false
    property color fill: Theme.fieldFill

    implicitWidth: Metrics.popoverWidth
    implicitHeight: Metrics.field
    leftPadding: Metrics.spaceM
    rightPadding: Metrics.spaceM
    topPadding: Math.max(0, contentHeight - Metrics.body.line) // an Arabic line is deeper; its baseline stays
    horizontalAlignment: TextInput.AlignLeft // right-to-left text reads so inside its place
    verticalAlignment: TextInput.AlignVCenter
    color: enabled ? Theme.textPrimary : Theme.textDisabled
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    placeholderTextColor: Theme.textSecondary
    font: Metrics.bodyFont
    selectByMouse: true
    hoverEnabled: true

    Accessible.role: Accessible.EditableText
    Accessible.name: name

    background: Rectangle {
        radius: Metrics.radiusControl
        color: control.activeFocus && !Theme.isDark ? Theme.raised : control.fill
        border.width: Metrics.hairline
        border.color: Theme.hairline

        Rectangle {
            visible: control.hasError || control.activeFocus
            anchors.fill: parent
            anchors.margins: -Metrics.hairline
            radius: parent.radius + Metrics.hairline
            color: "transparent"
            border.width: Metrics.focus
            border.color: control.hasError ? Theme.danger : Theme.focusRing
        }
    }

    Label {
        x: control.leftPadding
        y: (parent.height - height) / 2
        width: parent.width - control.leftPadding - control.rightPadding
        visible: control.text === "" && control.preeditText === ""
        color: control.enabled ? Theme.textSecondary : Theme.textDisabled
        text: control.placeholderText
    }
}
