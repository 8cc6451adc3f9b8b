// A folder of the grid. The storages are made of it as well: icon, name and click are the same.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Rectangle {
    id: wrapper

    property string icon: "image://resource/e3_filter_folders"
    property string iconText ///< written into the icon
    property string secondText ///< below the name, two lines at most
    property int nameLines: 3
    property int textMargin: 0

    function activate() {
        console.log(path, name)
        FolderModel.changeFolder(path)
    }

    anchors {
        fill: parent
        leftMargin: isFirstInRow ? gridMargin : 0
        rightMargin: isLastInRow ? gridMargin : 0
    }

    Accessible.name: name
    Accessible.role: Accessible.Button
    Accessible.onPressAction: activate()

    Item {
        id: inside

        anchors {
            fill: parent
            margins: Global.dp(6 * 0.5333)
        }

        Image {
            id: icon_image

            anchors {
                top: parent.top
                topMargin: Global.dp(14 * 0.5333)
                horizontalCenter: parent.horizontalCenter
            }
            height: width
            source: wrapper.icon
            sourceSize: Qt.size(width, height)
            width: Global.dp(144 * 0.5333)
            Accessible.ignored: true
        }

        StyledText {
            anchors.centerIn: icon_image
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: 2
            styledFont: FontStyles.TextInIcons1
            text: wrapper.iconText
            width: Global.dp(80 * 0.5333)
            wrapMode: Text.WordWrap
            Accessible.ignored: true
        }

        Item {
            id: texts

            anchors {
                top: icon_image.bottom
                bottom: parent.bottom
                left: parent.left
                right: parent.right
                margins: wrapper.textMargin
            }

            StyledText {
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                // Whole lines: on a small panel the cell has room for fewer.
                maximumLineCount: Math.max(1, Math.min(wrapper.nameLines, Math.floor(
                    texts.height / GlobalValues.fontLargeBodyLineHeight)))
                styledFont: FontStyles.BodyLBold
                text: name
                width: parent.width
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                Accessible.ignored: true
            }

            FontMetrics {
                id: own_metrics

                font: second_text.font
            }

            StyledText {
                id: second_text

                // Lower than the font's own, where another one helps out: it would stand on the line below.
                readonly property int sunk: Math.max(0, Math.round(baselineOffset - topPadding - own_metrics.ascent))

                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                lineHeight: font.pixelSize // solid, or two lines would not fit
                maximumLineCount: 2
                styledFont: FontStyles.BodySBold
                text: wrapper.secondText
                visible: text !== ""
                width: parent.width
                wrapMode: Text.WordWrap
                y: GlobalValues.fontLargeBodyLineHeight + wrapper.textMargin - sunk
                Accessible.ignored: true
            }
        }
    }

    // Where the keys stand; the finger needs no such sign.
    Rectangle {
        anchors.fill: parent
        border.color: "black"
        border.width: Global.dp(6 * 0.5333)
        color: "transparent"
        visible: !DeviceInfoProvider.isTouchDevice && currentIndex === index
    }

    DottedSeparator {
        anchors {
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
    }

    DottedSeparator {
        anchors {
            right: parent.right
            verticalCenter: parent.verticalCenter
        }
        height: parent.height - gridMargin * 4
        vertical: true
        visible: !isLastInRow
    }

    MouseAreaDelegate {
        onClicked: wrapper.activate()
    }
}
