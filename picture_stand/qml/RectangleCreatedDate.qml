// When the picture was taken, in a corner of it.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Rectangle {
    id: wrapper

    property date datetime: new Date()
    property bool bold: true
    property bool italic: true
    property string font_family: "Roboto"
    property int position_uid: 0
    readonly property int potential_width: Global.dp(40 * 0.53) * 2 + content.width

    function getStateByPosition(uid) {
        switch (uid) {
        case 1:
            return "top_right"
        case 2:
            return "bottom_left"
        case 3:
            return "bottom_right"
        default:
            return "top_left"
        }
    }

    width: potential_width
    height: Global.dp(15 * 0.53) * 2 + txt.height
    border.color: "white"
    border.width: Global.dp(1 * 0.53)
    color: "#80000000"
    radius: Global.dp(58 * 0.53)
    state: getStateByPosition(position_uid)

    Item {
        id: content

        anchors {
            top: parent.top
            bottom: parent.bottom
            horizontalCenter: parent.horizontalCenter
        }
        width: img.width + txt.width + Global.dp(15.5 * 0.53)

        Image {
            id: img

            anchors {
                left: parent.left
                verticalCenter: parent.verticalCenter
            }
            source: "image://resource/photo_created_date_small"
            Accessible.ignored: true
        }

        StyledText {
            id: txt

            anchors {
                left: img.right
                leftMargin: Global.dp(4 * 0.53)
                verticalCenter: parent.verticalCenter
            }
            color: "white"
            font.bold: wrapper.bold
            font.family: wrapper.font_family
            font.italic: wrapper.italic
            text: SlideshowModel.getTimeString("%b %d, %Y", wrapper.datetime)
        }
    }
}
