// Where and in which font a show tells the date and the time, tried out at once and kept when done.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    signal back()

    SettingsCustomizeDate {
        anchors.fill: parent
        current_font_bold: SettingsModel.current_date_font_is_bold
        current_font_family: SettingsModel.current_date_font
        current_font_italic: SettingsModel.current_date_font_is_italic
        current_position: SettingsModel.current_date_position

        onBack: {
            SettingsModel.loadConfig()
            wrapper.back()
        }
        onChangePosition: uid => SettingsModel.current_date_position = uid
        onChooseFont: font => {
            if (SettingsModel.current_date_font !== font) {
                chooseFontStyle(false, false)
                SettingsModel.current_date_font = font
            }
        }
        onChooseFontStyle: (bold, italic) => {
            SettingsModel.current_date_font_is_bold = bold
            SettingsModel.current_date_font_is_italic = italic
        }
        onDone: {
            SettingsModel.saveConfig("current_date_position")
            SettingsModel.saveConfig("current_date_font")
            SettingsModel.saveConfig("current_date_font_is_bold")
            SettingsModel.saveConfig("current_date_font_is_italic")
            back() // the editor's: what was saved is read again
        }
    }

    RectangleCurrentDate {
        id: preview

        anchors {
            margins: Global.dp(48 * 0.53)
            // For the upper corners: clear of the bar.
            topMargin: Global.dp(48 * 0.53) + GlobalValues.defaultAppHeaderHeight
                + GlobalValues.defaultSolidSeparatorThickness
        }
        bold: SettingsModel.current_date_font_is_bold
        font_family: FontModel.getFontFamilyByName(SettingsModel.current_date_font)
        italic: SettingsModel.current_date_font_is_italic
        position_uid: SettingsModel.current_date_position

        states: [
            State {
                name: "top_left"

                AnchorChanges {
                    target: preview
                    anchors.top: wrapper.top
                    anchors.left: wrapper.left
                }
            },
            State {
                name: "top_right"

                AnchorChanges {
                    target: preview
                    anchors.top: wrapper.top
                    anchors.right: wrapper.right
                }
            },
            State {
                name: "bottom_left"

                AnchorChanges {
                    target: preview
                    anchors.bottom: wrapper.bottom
                    anchors.left: wrapper.left
                }
            },
            State {
                name: "bottom_right"

                AnchorChanges {
                    target: preview
                    anchors.bottom: wrapper.bottom
                    anchors.right: wrapper.right
                }
            }
        ]
    }
}
