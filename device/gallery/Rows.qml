// Rows of settings: switches and values, awake and asleep.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    Column {
        x: GlobalValues.separatorSideOffset
        width: parent.width - 2 * x

        SettingsBitmapTextSwitcher {
            width: parent.width
            title: "Random order"
            image_src: "image://resource/player2_mode_random"
            switch_value: true
        }
        DottedSeparator { width: parent.width }
        SettingsBitmapTextSwitcher {
            width: parent.width
            title: "Date and time over the pictures, in the language of the device"
            image_src: "image://resource/photo_created_date"
        }
        DottedSeparator { width: parent.width }
        SettingsBitmapTextSwitcher {
            width: parent.width
            title: "Asleep"
            image_src: "image://resource/display_mode"
            switch_value: true
            enabled: false
        }
        DottedSeparator { width: parent.width }
        SettingsBitmapTextTextButton {
            width: parent.width
            title: "Interval"
            text: "5 minutes"
            image_src: "image://resource/validity_date"
        }
        DottedSeparator { width: parent.width }
        SettingsBitmapTextTextButton {
            width: parent.width
            title: "Font"
            text: "A family with a very long name that goes on"
            image_src: "image://resource/scribble_text_tool"
        }
    }
}
