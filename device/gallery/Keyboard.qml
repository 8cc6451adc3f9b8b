// The device's keyboard below the field that it writes into.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: page

    property string variant

    anchors.fill: parent
    onVariantChanged: {
        field.focus = false // the keyboard comes anew, with its first page
        field.inputMethodHints = variant === "KeyboardDigits" ? Qt.ImhDigitsOnly : Qt.ImhNone
        field.text = variant === "KeyboardDigits" ? "12345" : "Garden in spring"
        field.forceActiveFocus()
    }

    Rectangle {
        x: GlobalValues.defaultListViewSideMargin
        y: GlobalValues.separatorSideOffset
        width: parent.width - 2 * x
        height: Global.pixelsFromDesign(112)
        border.color: GlobalValues.defaultBorderColor
        border.width: GlobalValues.inputElementActiveBorder

        AdvancedTextInput {
            id: field

            anchors.fill: parent
        }
    }
}
