// A blank cell at the end of the folders: it carries the row's line on to the right edge.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picturestand 1.0

Item {
    anchors {
        fill: parent
        leftMargin: isFirstInRow ? gridMargin : 0
        rightMargin: isLastInRow ? gridMargin : 0
    }

    DottedSeparator {
        anchors {
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
    }
}
