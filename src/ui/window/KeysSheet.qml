pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// Every key of the window, and what it does.
Sheet {
    id: sheet

    readonly property list<var> groups: [
        { title: "Everywhere", keys: [
            ["Ctrl+1 … 4", "Library, Discover, Studio, Create with AI"], ["Ctrl+O", "Add files"], ["Ctrl+,", "Settings"],
            ["F1", "These keys"], ["Ctrl+Q", "Quit"]] },
        { title: "Library", keys: [
            ["Ctrl+F", "Search"], ["↑ ↓  Page Up … End", "Go to another sound; with Shift, mark up to it"],
            ["Letters", "In the list: go to the name that begins so"], ["Ctrl+A", "Mark all"], ["F2", "Rename"],
            ["Delete", "Delete at once"], ["Menu", "What else can be done"]] },
        { title: "Sound", keys: [
            ["Space", "Play or stop"], ["L", "Loop"], ["[   ]", "Start or end at the playhead or the cursor"],
            ["Ctrl+S", "Save"], ["Ctrl+Return", "Add to the library"],
            ["Ctrl++  Ctrl+−", "Zoom"], ["Ctrl+9   Ctrl+0", "Show the part, or the whole sound"],
            ["Ctrl+Space", "On a part: mark it as well"], ["Delete", "On a slider: reset it; on a tag: remove it"]] }
    ]

    title: "Keys"
    implicitWidth: Metrics.settingsWidth
    margins: Metrics.windowGap

    contentItem: FocusScope {
        implicitHeight: page.height
        focus: true

        Flickable {
            id: scroller
            anchors.fill: parent
            contentHeight: page.height
            boundsBehavior: Flickable.StopAtBounds
            clip: true

            T.ScrollBar.vertical: ScrollThumb {
                isSteady: true
            }

            Column {
                id: page
                width: scroller.width
                spacing: Metrics.spaceS

                Repeater {
                    model: sheet.groups

                    Column {
                        id: group
                        required property var modelData

                        width: page.width
                        spacing: Metrics.focusGap

                        Label {
                            type: Metrics.label
                            text: group.modelData.title
                        }
                        Repeater {
                            model: group.modelData.keys

                            Item {
                                id: row
                                required property var modelData

                                width: page.width
                                height: Math.max(key.height, what.height)

                                Accessible.role: Accessible.StaticText
                                Accessible.name: modelData[0] + ": " + modelData[1]

                                Label {
                                    id: key
                                    width: Math.round(parent.width * 0.36)
                                    type: Metrics.bodyStrong
                                    wrapMode: Text.Wrap
                                    text: row.modelData[0]
                                }
                                Label {
                                    id: what
                                    anchors.left: key.right
                                    anchors.right: parent.right
                                    wrapMode: Text.Wrap
                                    color: Theme.textSecondary
                                    text: row.modelData[1]
                                }
                            }
                        }
                    }
                }
            }
        }
        IconButton {
            objectName: "closeKeys"
            anchors.right: parent.right
            anchors.rightMargin: -Metrics.spaceS
            y: -Metrics.spaceM - Metrics.title.line + (Metrics.title.line - height) / 2
            iconName: "close"
            text: "Close"
            keys: "Esc"
            onClicked: sheet.close()
        }
    }
}
