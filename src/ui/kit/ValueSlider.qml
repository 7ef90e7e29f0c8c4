import QtQuick
import QtQuick.Templates as T
import Tonequill.Kit

// A row that sets a number: its name, the slider, and the value in words. The
// fill starts at the neutral value, where the row stays quiet.
Item {
    id: control

    required property string name
    required property string valueText
    property real neutral: slider.from
    property alias from: slider.from
    property alias to: slider.to
    property alias stepSize: slider.stepSize
    property real value: from // as it is; what is wanted comes with moved()
    property real nameWidth: Metrics.spaceL * 4
    property real valueWidth: Metrics.spaceL * 5

    readonly property bool isChanged: Math.abs(value - neutral) > 1e-9
    readonly property real neutralPosition: (neutral - from) / (to - from)

    signal moved(value: real)
    signal resetAsked // by a double click

    implicitWidth: Metrics.popoverWidth
    implicitHeight: Metrics.sliderRow

    Label {
        id: nameLabel
        anchors.verticalCenter: parent.verticalCenter
        width: control.nameWidth
        color: Theme.textSecondary
        text: control.name
    }
    T.Slider {
        id: slider
        anchors.left: nameLabel.right
        anchors.right: number.left
        anchors.margins: -thumb.width / 2 // the thumb's middle reaches the track's ends
        height: parent.height
        // What a screen reader asks a slider for, and sets.
        readonly property real minimumValue: from
        readonly property real maximumValue: to
        readonly property real page: 10 // steps, or tenths of what has no steps

        value: control.value
        onValueChanged: {
            if (value !== control.value && control.value >= from && control.value <= to)
                control.moved(value);
        }
        wheelEnabled: true
        snapMode: stepSize > 0 ? T.Slider.SnapAlways : T.Slider.NoSnap
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        onPressedChanged: {
            if (!pressed && isSecond && position === pressedAt)
                afterwards.start();
            isSecond = pressed && again.running;
            pressedAt = position;
            again.restart();
        }

        property bool isSecond: false
        property real pressedAt: 0

        function goTo(place: real) {
            value = Math.max(from, Math.min(to, place));
            value = Qt.binding(() => control.value);
        }

        Keys.onPressed: event => {
            const by = stepSize > 0 ? stepSize * page : (to - from) / page;
            event.accepted = true;
            switch (event.key) {
            case Qt.Key_Delete:
            case Qt.Key_Backspace: return control.resetAsked();
            case Qt.Key_Home: return goTo(from);
            case Qt.Key_End: return goTo(to);
            case Qt.Key_PageUp: return goTo(value + by);
            case Qt.Key_PageDown: return goTo(value - by);
            }
            event.accepted = false;
        }
        Timer {
            id: again // runs while a second press makes a double click
            interval: Application.styleHints.mouseDoubleClickInterval
        }
        Timer { // the slider takes its place from the click first
            id: afterwards
            interval: 0
            onTriggered: control.resetAsked()
        }

        Accessible.role: Accessible.Slider
        Accessible.name: control.name + ", " + control.valueText
        Accessible.onIncreaseAction: slider.goTo(slider.value + (slider.stepSize > 0 ? slider.stepSize : (slider.to - slider.from) / slider.page))
        Accessible.onDecreaseAction: slider.goTo(slider.value - (slider.stepSize > 0 ? slider.stepSize : (slider.to - slider.from) / slider.page))

        background: Rectangle {
            x: thumb.width / 2
            y: (slider.height - height) / 2
            width: slider.width - thumb.width
            height: Metrics.sliderTrack
            radius: height / 2
            color: Theme.sliderTrack

            Rectangle {
                readonly property real base: control.neutralPosition * parent.width
                readonly property real centre: thumb.x

                visible: control.isChanged
                x: Math.min(base, centre)
                width: Math.abs(centre - base)
                height: parent.height
                color: slider.enabled ? Theme.sliderFill : Theme.textDisabled
            }
            Rectangle { // where the neutral value is
                visible: control.isChanged && control.neutralPosition > 0
                x: control.neutralPosition * parent.width - width / 2
                y: (parent.height - height) / 2
                width: Metrics.focus
                height: Metrics.spaceS
                color: slider.enabled ? Theme.control : Theme.textDisabled
            }
        }
        handle: Rectangle {
            id: thumb
            x: slider.visualPosition * (slider.width - width)
            y: (slider.height - height) / 2
            width: Metrics.sliderThumb
            height: Metrics.sliderThumb
            radius: width / 2
            color: Theme.thumb
            border.width: Theme.isDark ? 0 : Metrics.hairline
            border.color: control.isChanged ? Theme.sliderFill : Theme.control
            opacity: slider.enabled ? 1 : Metrics.disabledGraphic

            FocusRing {
                visible: slider.visualFocus
                around: parent.radius
            }
        }
    }
    NumberText {
        id: number
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: control.valueWidth
        alignRight: true
        type: control.isChanged ? Metrics.bodyStrong : Metrics.body
        color: !slider.enabled ? Theme.textDisabled : control.isChanged ? Theme.textPrimary : Theme.textSecondary
        text: control.valueText
    }
}
