// The light, and fields for text.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    anchors.fill: parent

    Frontlight {
        id: frontlight

        width: parent.width
    }
    Column {
        anchors {
            top: frontlight.bottom
            left: parent.left
            right: parent.right
            margins: GlobalValues.defaultListViewSideMargin
        }
        spacing: Global.pixelsFromDesign(32)

        AdvancedTextInput {
            width: parent.width
            text: "Grandmother’s album"
        }
        AdvancedTextInput {
            width: Global.pixelsFromDesign(150)
            text: "12345"
        }
    }
}
