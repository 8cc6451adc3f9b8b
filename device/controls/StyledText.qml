// Text in one of the theme's styles. Plain text unless told: titles and file names show as they were typed.
import QtQuick
import com.lindenreed.controls

Text {
    id: styled_text

    property int styledFont: FontStyles.Unstyled

    // Qt makes the last of several fixed lines as high as the font is; these bring the text to its lines' height, with
    // the letters in their middle.
    readonly property int leading: styledFont === FontStyles.Unstyled || lineHeightMode !== Text.FixedHeight
        ? 0 : Math.round(lineHeight) - FontStyles.lineHeight(styledFont) + FontStyles.leading(styledFont)

    bottomPadding: leading - topPadding
    color: GlobalValues.defaultBorderColor
    font.bold: FontStyles.isBold(styledFont)
    font.family: FontStyles.family
    font.hintingPreference: Font.PreferNoHinting
    font.pixelSize: FontStyles.pixelSize(styledFont)
    // A style brings its line with it; a caller who asks for fixed lines need not name their height.
    lineHeight: lineHeightMode === Text.FixedHeight ? FontStyles.lineHeight(styledFont) : 1
    lineHeightMode: styledFont === FontStyles.Unstyled ? Text.ProportionalHeight : Text.FixedHeight
    renderType: Text.NativeRendering
    textFormat: Text.PlainText
    topPadding: Math.floor(leading / 2)

    Accessible.name: text
    Accessible.role: Accessible.StaticText
}
