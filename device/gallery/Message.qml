// A short message over the page.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    anchors.fill: parent

    InfoMessage {
        text: "2 pictures were added to Garden"
        icon: "image://resource/icon_done"
    }
}
