pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit
import Tonequill.Settings

// The themes side by side, of which one is chosen. The Tab key comes to the
// chosen one, the arrows choose its neighbours.
Item {
    id: picker

    required property ThemesModel themes

    function chooseBeside(by) {
        const next = repeater.itemAt(themes.current + by);
        if (!next)
            return;
        themes.choose(themes.current + by);
        next.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: Metrics.swatchHeight + Metrics.spaceXs + Metrics.caption.line + 2 * Metrics.spaceXs
    Keys.onLeftPressed: chooseBeside(-1)
    Keys.onUpPressed: chooseBeside(-1)
    Keys.onRightPressed: chooseBeside(1)
    Keys.onDownPressed: chooseBeside(1)

    Accessible.role: Accessible.Grouping
    Accessible.name: "Theme"

    Repeater {
        id: repeater
        model: picker.themes

        T.RadioButton {
            id: swatch

            required property int index
            required property string name
            required property color start
            required property color end
            required property color accent
            required property bool isCurrent

            x: Math.round(index * (picker.width - width) / (repeater.count - 1))
            width: Metrics.swatchWidth + 2 * ring.reach
            height: picker.height
            focusPolicy: isCurrent || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
            hoverEnabled: true
            checked: isCurrent
            onClicked: picker.themes.choose(index)
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()

            Accessible.name: name
            Accessible.checked: isCurrent

            background: Item {
                FocusRing {
                    visible: swatch.visualFocus
                    around: Metrics.radiusCard - reach
                }
            }
            contentItem: Item {
                ThemeSwatch {
                    id: picture
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: Metrics.spaceXs
                    width: Metrics.swatchWidth
                    height: Metrics.swatchHeight
                    start: swatch.start
                    end: swatch.end
                    accent: swatch.accent
                    edge: Theme.popover
                    radius: Metrics.radiusInner
                    bar: Qt.size(Metrics.swatchBar, Metrics.spaceS)
                }
                Rectangle {
                    id: ring
                    readonly property real reach: Metrics.focusGap + Metrics.focus

                    visible: swatch.isCurrent
                    anchors.fill: picture
                    anchors.margins: -reach
                    radius: Metrics.radiusInner + reach
                    color: "transparent"
                    border.width: Metrics.focus
                    border.color: Theme.accentInk
                }
                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: Metrics.spaceXs
                    type: swatch.isCurrent ? Metrics.captionStrong : Metrics.caption
                    font.weight: swatch.isCurrent ? Metrics.heading.weight : Metrics.caption.weight
                    color: swatch.isCurrent || swatch.hovered ? Theme.textPrimary : Theme.textSecondary
                    text: swatch.name
                }
            }
        }
    }
}
