pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit
import Tonequill.Editor

// The length, the tags with their editing, what the ear tells, and the licence.
Item {
    id: row

    required property SoundView sound
    signal editingEnded

    height: Metrics.tag

    NumberText {
        id: duration
        objectName: "duration"
        anchors.verticalCenter: parent.verticalCenter
        type: Metrics.caption
        color: Theme.textSecondary
        text: row.sound.durationText

        Accessible.role: Accessible.StaticText
        Accessible.name: "Length " + text
    }
    Label {
        id: dot
        anchors.left: duration.right
        anchors.leftMargin: Metrics.spaceS
        anchors.verticalCenter: parent.verticalCenter
        type: Metrics.caption
        color: Theme.textSecondary
        text: "·"
    }
    SideScroller {
        id: scroller
        objectName: "tags"
        anchors.left: dot.right
        anchors.leftMargin: Metrics.spaceS - room
        anchors.right: license.left
        anchors.rightMargin: license.visible ? Metrics.spaceS - room : -room
        // Taller than the row, so that the tags can be hit.
        anchors.verticalCenter: parent.verticalCenter
        height: Metrics.hitTarget + 2 * room
        contentWidth: words.width + 2 * room

        Row {
            id: words
            x: scroller.room
            y: scroller.room
            spacing: Metrics.spaceS

            Repeater {
                model: row.sound.tags

                EditableTag {
                    required property string modelData
                    text: modelData
                    onRemoved: row.sound.removeTag(text)
                }
            }
            Repeater {
                model: row.sound.traits

                Tag {
                    required property string modelData
                    anchors.verticalCenter: parent ? parent.verticalCenter : undefined
                    text: modelData
                }
            }
            AddTag {
                id: addTag
                objectName: "addTag"
                onXChanged: showWhileTyping()
                onIsTypingChanged: showWhileTyping()

                function showWhileTyping() {
                    if (isTyping)
                        scroller.show(addTag);
                }

                onAdded: tags => row.sound.addTags(tags)
                onEditingEnded: row.editingEnded()
            }
        }
    }
    Row {
        id: license
        visible: row.sound.license !== ""
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Metrics.spaceS

        Accessible.role: Accessible.StaticText
        Accessible.name: row.sound.needsCredit ? row.sound.creditLine : row.sound.license

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            width: Metrics.iconSmall
            height: Metrics.iconSmall
            name: "credit"
            color: row.sound.needsCredit ? Theme.warning : Theme.textSecondary
        }
        Label {
            type: Metrics.caption
            color: Theme.textSecondary
            text: row.sound.license
        }
    }
}
