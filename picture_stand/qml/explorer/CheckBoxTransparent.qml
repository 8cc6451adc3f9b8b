// The check circle over a picture that can be selected.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property bool isSelected: true

    Rectangle {
        anchors.fill: parent
        color: "white"
        opacity: 0.5
        visible: wrapper.isSelected
    }

    Rectangle {
        anchors.centerIn: parent
        border.color: "grey"
        border.width: 5
        color: "white"
        height: width
        radius: width / 2
        width: Global.dp(94 * 0.53)

        Image {
            anchors.centerIn: parent
            height: width
            source: "image://resource/sync_status_done"
            sourceSize: Qt.size(width, height)
            visible: wrapper.isSelected
            width: Global.dp(48 * 0.53)
            Accessible.ignored: true
        }
    }
}
