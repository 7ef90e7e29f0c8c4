pragma ComponentBehavior: Bound
import QtQuick
import Tonequill.Kit

// The window's passing message. It keeps its words while it goes.
Item {
    id: line

    required property string text
    required property bool isError
    property real maximumWidth: Metrics.noticeWidth
    property bool isBusy: false // it tells what goes on, not what has been done

    property string shownText: ""
    property bool shownIsError: false
    property bool shownIsBusy: false
    readonly property bool isShown: text !== ""

    function take() {
        if (text !== "") {
            shownText = text;
            shownIsError = isError;
            shownIsBusy = isBusy;
        }
    }

    onTextChanged: take()
    onIsErrorChanged: take()
    onIsBusyChanged: take()
    Component.onCompleted: take()

    readonly property real words: measure.implicitWidth + icon.width + 2 * Metrics.spaceL + Metrics.spaceS

    width: Math.ceil(Math.min(words, maximumWidth))
    height: label.implicitHeight + 2 * Metrics.noticePadding
    opacity: isShown ? 1 : 0
    visible: opacity > 0
    scale: isShown || Metrics.noticeIn === 0 ? 1 : 0.98

    Accessible.role: Accessible.AlertMessage
    Accessible.name: shownText
    Accessible.ignored: !isShown

    Behavior on opacity {
        Ease { duration: line.isShown ? Metrics.noticeIn : Metrics.noticeOut }
    }
    Behavior on scale {
        Ease { duration: line.isShown ? Metrics.noticeIn : Metrics.noticeOut }
    }

    Shadow {
        layers: Theme.popoverShadow
    }
    Rectangle {
        anchors.fill: parent
        radius: Metrics.radiusCard
        color: Theme.popover
        border.width: Theme.isDark ? Metrics.hairline : 0
        border.color: Theme.border
    }
    Icon {
        id: icon
        x: Metrics.spaceL
        anchors.verticalCenter: parent.verticalCenter
        visible: !line.shownIsBusy
        width: Metrics.icon
        height: Metrics.icon
        name: line.shownIsError ? "warning" : "check"
        color: line.shownIsError ? Theme.danger : Theme.success
    }
    OnDemand {
        isWanted: line.shownIsBusy && line.visible

        Spinner {
            anchors.centerIn: icon
        }
    }
    Label { // how wide the words would be on one line
        id: measure
        visible: false
        type: Metrics.bodyStrong
        text: line.shownText
    }
    Paragraph {
        id: label
        anchors.left: icon.right
        anchors.leftMargin: Metrics.spaceS
        anchors.right: parent.right
        anchors.rightMargin: Metrics.spaceL
        anchors.verticalCenter: parent.verticalCenter
        type: Metrics.bodyStrong
        text: line.shownText
    }
}
