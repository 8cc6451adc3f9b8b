// A settings row with its present value as a text.
import QtQuick
import com.lindenreed.controls

SettingsRow {
    id: settings_button

    property string text

    trailingWidth: value_text.width

    Accessible.description: text

    StyledText {
        id: value_text

        readonly property int widest: Math.floor(0.45 * settings_button.width)

        color: settings_button.pressed || !settings_button.enabled ? settings_button.ink
            : GlobalValues.defaultSolidseparatorColor
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignRight
        maximumLineCount: 2
        styledFont: FontStyles.BodyS
        text: settings_button.text
        width: Math.min(Math.ceil(implicitWidth), widest)
        wrapMode: Text.Wrap
        x: settings_button.width - settings_button.sidePadding - width
        y: Math.round((settings_button.height - height) / 2)
    }
}
