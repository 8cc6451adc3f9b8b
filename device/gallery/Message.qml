// A short message over the page, above the footer button.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    anchors.fill: parent

    RoundedCornerButtonContainer {
        anchors {
            bottom: parent.bottom
            horizontalCenter: parent.horizontalCenter
        }
        width: parent.width - 2 * GlobalValues.scrollListCenterButtonSideOffset
        height: GlobalValues.scrollListButtonsHeight
        visibleBorders: [1, 1, 0, 1]

        StyledText {
            anchors.centerIn: parent
            styledFont: FontStyles.Heading5
            text: "Play"
        }
    }
    InfoMessage {
        text: "2 pictures were added to Garden"
        icon: "image://resource/icon_done"
    }
}
