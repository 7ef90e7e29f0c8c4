pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit
import Tonequill.Settings

// All settings, in their groups. Where there is too little room they scroll,
// and what gets the keyboard comes into view.
Flickable {
    id: page

    required property SettingsView settings

    readonly property Item focused: Window.activeFocusItem

    function bringIntoView(item) {
        const top = item.mapToItem(groups, 0, 0).y - Metrics.spaceL;
        const bottom = top + item.height + 2 * Metrics.spaceL;
        contentY = Math.max(0, Math.min(top, Math.max(contentY, bottom - height)), Math.min(contentY, top));
    }

    implicitHeight: contentHeight
    contentHeight: groups.height + Metrics.spaceL + Metrics.spaceXl
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    T.ScrollBar.vertical: ScrollThumb {}
    onFocusedChanged: {
        for (let item = focused; item; item = item.parent) {
            if (item === groups)
                bringIntoView(focused);
        }
    }

    Column {
        id: groups
        x: Metrics.spaceXl
        y: Metrics.spaceL
        width: page.width - 2 * x
        spacing: Metrics.spaceL

        SettingsGroup {
            width: parent.width
            title: "Appearance"

            Item {
                width: parent.width
                height: themes.height + 2 * themes.y

                ThemePicker {
                    id: themes
                    x: Metrics.spaceL
                    y: Metrics.spaceS
                    width: parent.width - 2 * x
                    height: implicitHeight
                    themes: page.settings.themes
                }
            }
            SettingsRow {
                text: "Light or dark"

                SegmentedSwitch {
                    anchors.verticalCenter: parent.verticalCenter
                    isSmall: true
                    isSunken: true
                    name: "Light or dark"

                    Repeater {
                        model: page.settings.appearances

                        Segment {
                            required property int index
                            required property string modelData

                            text: modelData
                            checked: page.settings.appearance === index
                            onClicked: page.settings.appearance = index
                        }
                    }
                }
            }
        }
        SettingsGroup {
            width: parent.width
            title: "Search"

            SettingsSwitch {
                isFirst: true
                text: "Show short effects only by default"
                isOn: page.settings.shortOnlyByDefault
                onFlipped: isOn => page.settings.shortOnlyByDefault = isOn
            }
            SettingsSwitch {
                text: "Hide sounds that need a credit"
                isOn: page.settings.hideCreditSounds
                onFlipped: isOn => page.settings.hideCreditSounds = isOn
            }
            SettingsNote {
                text: "CC BY and CC BY-SA sounds are free to use but must credit the creator. Most Arabic voice recordings are in this group."
            }
        }
        SettingsGroup {
            width: parent.width
            title: "Saving"

            SettingsRow {
                isFirst: true
                text: "Save to"

                SaveToMenu {
                    anchors.verticalCenter: parent.verticalCenter
                    settings: page.settings
                }
            }
            SettingsRow {
                text: "Final Cut Pro"
                value: page.settings.hasFinalCut ? "Found on this Mac" : "Not found"
            }
            SettingsSwitch {
                enabled: page.settings.hasFinalCut
                text: "Also add saved sounds to Final Cut Pro"
                isOn: page.settings.alsoFinalCut
                onFlipped: isOn => page.settings.alsoFinalCut = isOn
            }
            SettingsNote {
                text: "Sounds appear in a “Tonequill” event in your Final Cut library. You can also drag any sound straight into a timeline."
            }
        }
        SettingsGroup {
            width: parent.width
            title: "Library"

            SettingsRow {
                isFirst: true
                text: "Sounds"
                value: page.settings.soundCounts
            }
            SettingsRow {
                text: "Location"

                ActionButton {
                    anchors.verticalCenter: parent.verticalCenter
                    kind: ActionButton.Raised
                    iconName: "folder"
                    text: "Show in Finder"
                    onClicked: page.settings.showLibrary()
                }
            }
            SettingsNote {
                text: "Sounds you add are saved on this Mac and work without internet."
            }
        }
    }
}
