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
            "home", "back", "arrow_down", "plus_add", "plus", "minus", "done", "icon_done", "checkbox_on", "edit_word", "trash",
            "desktop_app_settings", "desktop_app_settings_f", "desktop_app_calendar", "validity_date", "display_mode",
            "player2_mode_random", "scribble_text_tool", "photo_created_date", "bookstore_change_view_to_list",
            "bookstore_change_view_to_thumbnails", "battery_warning", "audio_book_play", "audio_book_play_disabled",
            "e3_filter_folders", "e3_detail_internal_memory", "e3_detail_sd_card", "e3_detail_otg", "ci_device_email",
            "positioning_top_left", "positioning_top_right", "positioning_bottom_left", "positioning_bottom_right",
            "sync_status_done", "home_inv", "desktop_app_settings_inv", "e3_filter_folders_inv"
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

        Row {
            id: dark

            padding: Global.pixelsFromDesign(24)
            spacing: Global.pixelsFromDesign(24)

            Repeater {
                model: [
                    "slideshow_stop", "slideshow_settings", "slideshow_brightness", "slideshow_stop_inv"
                ]

                Image {
                    required property string modelData

                    source: "image://resource/" + modelData
                }
            }
        }
    }
}
