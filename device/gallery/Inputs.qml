// The light, and fields for text.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    anchors.fill: parent

    Frontlight {
        id: frontlight

        x: GlobalValues.separatorSideOffset
        width: parent.width - 2 * x
    }
    Column {
        anchors {
            top: frontlight.bottom
            left: parent.left
            right: parent.right
            margins: GlobalValues.defaultListViewSideMargin
        }
        spacing: Global.pixelsFromDesign(32)

        // The frames are the screens' own.
        Repeater {
            model: [
                { text: "Grandmother’s album", length: 840, style: FontStyles.BodyL, place: TextInput.AlignLeft },
                { text: "12345", length: 150, style: FontStyles.Heading5, place: TextInput.AlignHCenter }
            ]

            Rectangle {
                id: frame

                required property var modelData

                width: Global.pixelsFromDesign(modelData.length)
                height: Global.pixelsFromDesign(112)
                border.color: GlobalValues.defaultBorderColor
                border.width: GlobalValues.inputElementBorder

                AdvancedTextInput {
                    anchors.fill: parent
                    horizontalAlignment: frame.modelData.place
                    styledFont: frame.modelData.style
                    text: frame.modelData.text
                }
            }
        }
    }
}
