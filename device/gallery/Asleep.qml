// What cannot be used now.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as Controls2

Item {
    anchors.fill: parent

    Column {
        width: parent.width

        Controls2.AppHeader {
            width: parent.width
            title: "Asleep"
            closeIcon: "image://resource/home"

            BitmapButton {
                icon: "image://resource/plus_add"
                enabled: false
            }
            BitmapButton {
                icon: "image://resource/audio_book_play"
                disabledIcon: "image://resource/audio_book_play_disabled"
                enabled: false
            }
        }
        GroupSelectionPanel {
            width: parent.width
            items_count: 0
            selected_count: 0
            selected_label_text: "selected"
            select_all_title: "All"
            use_disabled: true
        }
        SettingsBitmapTextTextButton {
            x: GlobalValues.separatorSideOffset
            width: parent.width - 2 * x
            title: "Interval"
            text: "5 minutes"
            image_src: "image://resource/validity_date"
            enabled: false
        }
        SettingsBitmapTextSwitcher {
            x: GlobalValues.separatorSideOffset
            width: parent.width - 2 * x
            title: "Random order"
            image_src: "image://resource/player2_mode_random"
            enabled: false
        }
        Row {
            x: GlobalValues.defaultListViewSideMargin
            spacing: Global.pixelsFromDesign(32)

            TextButton {
                text: "Add"
                enabled: false
            }
            ComboBox {
                menuItems: ListModel {
                    ListElement { uid_: 0; text_: "Seconds" }
                }
                selectedUid: 0
                show_border: true
                enabled: false
            }
        }
        Item {
            width: 1
            height: Global.pixelsFromDesign(48)
        }
        DialogFooter {
            width: parent.width
            applyTitle: "Save"
            enabled: false
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
        enabled: false

        StyledText {
            anchors.centerIn: parent
            styledFont: FontStyles.Heading5
            color: GlobalValues.defaultDisabledTextColor
            text: "Play"
        }
    }
}
