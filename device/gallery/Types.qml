// The type scale, each style in its own name, and the dotted separators.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Column {
    x: GlobalValues.defaultListViewSideMargin
    y: x
    spacing: Global.pixelsFromDesign(24)

    Repeater {
        model: ["Heading3", "Heading4", "Heading5", "BodyLBold", "BodyL", "BodyBold", "BodySBold", "BodyS", "TextInIcons1"]

        StyledText {
            required property string modelData

            styledFont: FontStyles[modelData]
            text: modelData + " – Garden in spring 1/24"
        }
    }
    StyledText { text: "Text without a style" }
    DottedSeparator {
        width: Global.pixelsFromDesign(600)
        height: Global.pixelsFromDesign(2)
    }
    Rectangle {
        width: Global.pixelsFromDesign(600)
        height: GlobalValues.defaultSolidSeparatorThickness
        color: GlobalValues.defaultSolidseparatorColor
    }
}
