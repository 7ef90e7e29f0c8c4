import QtQuick
import Tonequill.Kit

// A row with a switch; its words can be clicked as well.
SettingsRow {
    id: row

    property bool isOn: false

    signal flipped(bool isOn)

    TapHandler {
        parent: row
        onTapped: toggle.flip()
    }
    ToggleSwitch {
        id: toggle
        anchors.verticalCenter: parent.verticalCenter
        text: row.text
        checked: row.isOn
        onToggled: row.flipped(checked)
    }
}
