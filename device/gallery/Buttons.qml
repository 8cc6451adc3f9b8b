// Header, buttons of text and of pictures, and the footer button.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as Controls2

Item {
    anchors.fill: parent

    Controls2.AppHeader {
        id: header

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        title: "A title that is too long for its header, however wide that is"
        closeIcon: "image://resource/home"
        closePressedIcon: "image://resource/home_inv"

        BitmapButton {
            icon: "image://resource/desktop_app_settings"
            pressedIcon: "image://resource/desktop_app_settings_inv"
        }
    }

    Column {
        anchors {
            top: header.bottom
            left: parent.left
            margins: GlobalValues.defaultListViewSideMargin
        }
        spacing: Global.pixelsFromDesign(32)

        TextButton { text: "Add pictures" }
        TextButton {
            text: "Not now"
            enabled: false
        }
        Row {
            BitmapButton {
                icon: "image://resource/audio_book_play"
                disabledIcon: "image://resource/audio_book_play_disabled"
            }
            BitmapButton {
                icon: "image://resource/audio_book_play"
                disabledIcon: "image://resource/audio_book_play_disabled"
                enabled: false
            }
            BitmapButton { icon: "image://resource/edit_word" }
            BitmapButton { icon: "image://resource/trash" }
        }
    }

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
            text: "New playlist"
        }
    }
}
