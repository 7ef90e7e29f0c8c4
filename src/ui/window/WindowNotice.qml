import QtQuick
import Tonequill.Kit
import Tonequill.Window

// The notice of the window's model, at the lower edge of what it lies over.
NoticeLine {
    required property WindowModel model
    property bool isWanted: true

    anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
    anchors.bottom: parent ? parent.bottom : undefined
    anchors.bottomMargin: Metrics.spaceXl
    isBusy: model.noticeText === ""
    isError: model.noticeIsError
    text: !isWanted ? "" : isBusy ? model.workingText : model.noticeText
}
