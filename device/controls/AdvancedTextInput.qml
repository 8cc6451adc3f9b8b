// A field for one line of text. The screen draws the frame around it. The device's keyboard comes with the focus and
// goes with Return, when what was typed is acceptable.
import QtQuick
import com.lindenreed.controls

TextInput {
    id: text_input

    property int styledFont: FontStyles.BodyL

    /// A field for a few digits has no room to give away.
    readonly property bool narrow: width < Global.pixelsFromDesign(300)
    readonly property int sidePadding: narrow ? 0 : Global.pixelsFromDesign(24)

    function passFocus(forward: bool): bool {
        const next = nextItemInFocusChain(forward)
        if (!next || next === text_input)
            return false
        next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
        return true
    }

    activeFocusOnTab: true
    clip: true
    color: enabled ? GlobalValues.defaultBorderColor : GlobalValues.defaultDisabledTextColor
    font.bold: FontStyles.isBold(styledFont)
    font.family: FontStyles.family
    font.hintingPreference: Font.PreferNoHinting
    font.pixelSize: FontStyles.pixelSize(styledFont)
    leftPadding: sidePadding
    renderType: TextInput.NativeRendering
    rightPadding: sidePadding
    selectedTextColor: GlobalValues.defaultBackgroundColor
    selectionColor: GlobalValues.defaultBorderColor
    verticalAlignment: TextInput.AlignVCenter

    Accessible.editable: true
    Accessible.focusable: true
    Accessible.role: Accessible.EditableText
    Accessible.onPressAction: {
        forceActiveFocus()
        Qt.inputMethod.show() // it may have been put away since the field has the focus
    }

    Keys.onDownPressed: event => event.accepted = passFocus(true)
    Keys.onUpPressed: event => event.accepted = passFocus(false)

    cursorDelegate: Rectangle {
        color: GlobalValues.defaultBorderColor
        visible: text_input.cursorVisible && text_input.selectedText === ""
        width: Global.pixelsFromDesign(4)
    }

    onAccepted: Qt.inputMethod.hide()
}
