pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// The parts that were found. What doesn't fit scrolls under a fade.
Item {
    id: section

    required property SoundView sound

    required property bool isNarrow

    implicitHeight: Metrics.label.line + (isNarrow ? Metrics.spaceS : Metrics.spaceM) + Metrics.chip

    Label {
        id: head
        type: Metrics.label
        text: "Found in this file"
    }
    Label {
        anchors.left: head.right
        anchors.leftMargin: Metrics.spaceS
        anchors.baseline: head.baseline
        type: Metrics.caption
        color: Theme.textTertiary
        text: "⌘-click to pick several"
    }
    SideScroller {
        id: scroller
        objectName: "chips"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: -room
        anchors.bottom: parent.bottom
        height: Metrics.chip + 2 * room
        contentWidth: row.width + 2 * room

        Connections {
            target: section.sound
            function onOpened() {
                scroller.contentX = 0;
            }
        }
        ArrowGroup {
            id: group
            members: row
            width: row.width
            height: row.height
        }
        Row {
            id: row
            parent: group
            x: scroller.room
            y: scroller.room
            spacing: Metrics.spaceS

            Repeater {
                model: section.sound.parts

                Chip {
                    id: chip
                    required property int index
                    required property string title
                    required property string bareTitle
                    required property string length
                    required property bool marked
                    required property bool best

                    // Room for what will be heard in it, so that nothing moves when that comes.
                    reservedText: section.sound.parts.count > 1 ? bareTitle + " · Footsteps" : ""
                    isStop: group.stop === chip || (!group.stop && index === 0)
                    iconName: best ? "sparkle" : ""
                    text: chip.title
                    detail: chip.length
                    isPicked: marked
                    onPicked: modifiers => section.sound.parts.choose(index, modifiers)
                    onActiveFocusChanged: {
                        if (!activeFocus)
                            return;
                        group.stop = chip;
                        scroller.show(chip);
                    }
                }
            }
            Chip {
                id: whole
                objectName: "wholeFileChip"
                enabled: section.sound.isReady
                text: "Whole file"
                detail: section.sound.lengthText
                onPicked: section.sound.playback.selectAll()
                isStop: group.stop === whole || (!group.stop && section.sound.parts.count === 0)
                onActiveFocusChanged: {
                    if (!activeFocus)
                        return;
                    group.stop = whole;
                    scroller.show(whole);
                }
            }
        }
    }
    EdgeFade {
        visible: scroller.hasMoreRight
        ground: Theme.panelRight
        anchors.right: scroller.right
        anchors.verticalCenter: scroller.verticalCenter
        height: scroller.height
    }
    EdgeFade {
        visible: scroller.hasMoreLeft
        ground: Theme.panelMiddle
        rotation: 180
        anchors.left: scroller.left
        anchors.verticalCenter: scroller.verticalCenter
        height: scroller.height
    }
}
