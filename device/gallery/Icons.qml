// The icons at their natural size, and inverted ones for what is pressed.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Flow {
    anchors {
        fill: parent
        margins: GlobalValues.defaultListViewSideMargin
    }
    spacing: Global.pixelsFromDesign(24)

    Repeater {
        model: [
            "home", "back", "plus_add", "plus", "minus", "done", "icon_done", "checkbox_on", "edit_word", "trash",
            "desktop_app_settings", "desktop_app_settings_f", "desktop_app_calendar", "validity_date", "display_mode",
            "player2_mode_random", "scribble_text_tool", "photo_created_date", "bookstore_change_view_to_list",
            "bookstore_change_view_to_thumbnails", "battery_warning", "frontlight_brightness", "frontlight_color",
            "audio_book_play", "audio_book_play_disabled", "home_inv", "desktop_app_settings_inv", "arrow_down",
            "sync_status_done", "context_menu_pointer",
            "positioning_top_left", "positioning_top_right", "positioning_bottom_left", "positioning_bottom_right",
            "ci_device_email", "e3_detail_internal_memory", "e3_detail_sd_card", "e3_detail_otg", "e3_filter_folders",
            "e3_filter_folders_inv"
        ]

        Image {
            required property string modelData

            source: "image://resource/" + modelData
        }
    }
    Rectangle {
        width: dark.width
        height: dark.height
        color: "black"

        // At rest and, below, pressed.
        Grid {
            id: dark

            columns: 4
            padding: Global.pixelsFromDesign(24)
            verticalItemAlignment: Grid.AlignVCenter
            spacing: Global.pixelsFromDesign(24)

            Repeater {
                model: [
                    "slideshow_stop", "slideshow_settings", "slideshow_brightness", "photo_created_date_small",
                    "slideshow_stop_inv", "slideshow_settings_inv", "slideshow_brightness_inv",
                    "photo_created_date_small_inv"
                ]

                Image {
                    required property string modelData

                    source: "image://resource/" + modelData
                }
            }
        }
    }
}
