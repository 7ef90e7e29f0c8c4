import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// The open sound: what it is, its wave, the parts that were found, its effects.
// Where there is little room, the wave gives up height first.
Item {
    id: panel

    required property SoundView sound
    required property SoundActions actions
    required property bool isNarrow

    signal editingEnded

    function rename() {
        header.rename();
    }

    SoundHeader {
        id: header
        width: parent.width
        sound: panel.sound
        actions: panel.actions
        isNarrow: panel.isNarrow
        onEditingEnded: panel.editingEnded()
    }
    InlineNotice {
        id: failure
        objectName: "failure"
        visible: panel.sound.errorText !== ""
        anchors.top: header.bottom
        anchors.topMargin: Metrics.spaceM
        width: parent.width
        text: panel.sound.errorText
    }
    WaveWell {
        id: well
        objectName: "well"
        visible: panel.sound.isLoading || panel.sound.isReady
        anchors.top: failure.visible ? failure.bottom : header.bottom
        anchors.topMargin: Metrics.spaceM
        width: parent.width
        height: Math.max(Metrics.waveMinHeight, transport.y - y - Metrics.spaceS)
        sound: panel.sound
    }
    TransportRow {
        id: transport
        visible: well.visible
        y: parts.y - height - (panel.isNarrow ? Metrics.spaceM : Metrics.spaceL)
        width: parent.width
        sound: panel.sound
        stage: well.stage
        isNarrow: panel.isNarrow
    }
    PartChips {
        id: parts
        visible: well.visible
        y: line.y - height - (panel.isNarrow ? Metrics.spaceS : Metrics.spaceM)
        width: parent.width
        height: implicitHeight
        isNarrow: panel.isNarrow
        sound: panel.sound
    }
    Hairline {
        id: line
        visible: well.visible
        y: effects.y - Metrics.spaceS - Metrics.focusGap
        width: parent.width
    }
    EffectsPanel {
        id: effects
        visible: well.visible
        y: parent.height - implicitHeight - (panel.isNarrow ? 0 : Metrics.spaceXs)
        width: parent.width
        height: implicitHeight
        isNarrow: panel.isNarrow
        effects: panel.sound.effects
    }
}
