// In place of a picture until its thumbnail is there: its name, on a band that is black or grey by chance, so that a
// page of them is no even grid.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picturestand 1.0

Rectangle {
    id: wrapper

    property color bandColor: "black"
    property color textColor: "white"

    Component.onCompleted: {
        if (Math.random() < 0.5) {
            bandColor = "#CCCCCC"
            textColor = "black"
        }
    }

    Rectangle {
        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        color: wrapper.bandColor
        height: Math.max(0.45 * wrapper.height,
                         Math.min(label.contentHeight + Global.dp(12 * 0.5333), 0.8 * wrapper.height))

        StyledText {
            id: label

            anchors {
                top: parent.top
                left: parent.left
                right: parent.right
                margins: Global.dp(16 * 0.5333)
            }
            color: wrapper.textColor
            elide: Text.ElideRight
            font.bold: true
            // Whole lines: the highest band of a small cell has room for fewer.
            maximumLineCount: Math.max(1, Math.min(4, Math.floor(
                (0.8 * wrapper.height - anchors.margins) / GlobalValues.fontLargeBodyLineHeight)))
            styledFont: FontStyles.BodyL
            text: name
            wrapMode: Text.WordWrap
            Accessible.ignored: true
        }
    }
}
