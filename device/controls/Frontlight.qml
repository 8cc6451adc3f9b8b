// The device's frontlight panel. It acts on the light at once and always shows the light as it is, whoever changed it.
import QtQuick
import com.lindenreed.controls

Item {
    id: frontlight

    property int bottomPadding: 0
    readonly property bool frontlight_enabled: LightState.enabled

    readonly property int textRow: Global.pixelsFromDesign(120)

    /// Reads the levels again.
    function refresh(): void {
        LightState.changed()
    }

    implicitHeight: rows.height + bottomPadding
    implicitWidth: parent ? parent.width : 0

    Column {
        id: rows

        width: frontlight.width

        SettingsBitmapTextSwitcher {
            enabled: LightState.present
            height: frontlight.textRow
            switch_value: LightState.enabled
            title: qsTr("@FrontLight")
            titleFont: FontStyles.BodyLBold
            titleLeft: sidePadding
            width: rows.width
            onAction: LightState.enabled = !LightState.enabled
        }

        LightSlider {
            enabled: LightState.enabled && !LightState.brightnessAuto
            image_src: "image://resource/frontlight_brightness"
            name: qsTr("@Brightness")
            value: LightState.brightness
            visible: LightState.present
            width: rows.width
            onMoved: level => LightState.brightness = level
        }

        SettingsBitmapTextSwitcher {
            enabled: LightState.enabled
            height: frontlight.textRow
            switch_value: LightState.brightnessAuto
            title: qsTr("@AutomaticBrightness")
            visible: LightState.present
            width: rows.width
            onAction: LightState.brightnessAuto = !LightState.brightnessAuto
        }

        LightSlider {
            enabled: LightState.enabled && !LightState.colourAuto
            image_src: "image://resource/frontlight_color"
            name: qsTr("@ColorTemperature")
            value: LightState.colour
            visible: LightState.colourPresent
            width: rows.width
            onMoved: level => LightState.colour = level
        }

        SettingsBitmapTextSwitcher {
            enabled: LightState.enabled
            height: frontlight.textRow
            switch_value: LightState.colourAuto
            title: qsTr("@AutomaticColorTemperature")
            visible: LightState.colourPresent
            width: rows.width
            onAction: LightState.colourAuto = !LightState.colourAuto
        }
    }
}
