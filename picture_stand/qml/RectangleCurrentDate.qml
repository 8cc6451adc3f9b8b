// The time and the date, in a corner of the picture.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Rectangle {
    id: wrapper

    property date datetime: App.currentDate
    property int position_uid: 0
    property bool bold: true
    property bool italic: true
    property string font_family: "Roboto"
    readonly property int potential_width: Global.dp(35 * 0.53) * 2 + main_txt.width

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
    height: Global.dp(347 * 0.53)
    border.color: "white"
    border.width: Global.dp(1 * 0.53)
    color: "#80000000"
    radius: Global.dp(40 * 0.53)
    state: getStateByPosition(position_uid)

    Item {
        anchors {
            fill: parent
            topMargin: Global.dp(60 * 0.53)
            bottomMargin: Global.dp(60 * 0.53)
        }

        Column {
            anchors {
                left: parent.left
                right: parent.right
                verticalCenter: parent.verticalCenter
            }

            StyledText {
                id: main_txt

                anchors.horizontalCenter: parent.horizontalCenter
                height: Global.dp(113 * 0.53)
                color: "white"
                // As a whole: beside the style's size in pixels one in points would not count.
                font: Qt.font({
                    bold: wrapper.bold,
                    family: wrapper.font_family,
                    hintingPreference: Font.PreferNoHinting,
                    italic: wrapper.italic,
                    pointSize: 26
                })
                text: SlideshowModel.getTimeString("%H:%M", wrapper.datetime)
                verticalAlignment: Text.AlignVCenter
            }

            StyledText {
                id: subtext

                anchors.horizontalCenter: parent.horizontalCenter
                height: Global.dp(57 * 0.53)
                color: "white"
                font.bold: wrapper.bold
                font.family: wrapper.font_family
                font.italic: wrapper.italic
                text: SlideshowModel.getTimeString("%A,", wrapper.datetime)
                verticalAlignment: Text.AlignVCenter
            }

            StyledText {
                id: subtext2

                anchors.horizontalCenter: parent.horizontalCenter
                height: Global.dp(57 * 0.53)
                color: "white"
                font.bold: wrapper.bold
                font.family: wrapper.font_family
                font.italic: wrapper.italic
                text: SlideshowModel.getTimeString("%e %l", wrapper.datetime)
                verticalAlignment: Text.AlignVCenter
            }
        }
    }
}
