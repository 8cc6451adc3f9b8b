// A message that lies over the screen for a moment, above the footer button. A tap on it closes it; beside it the
// screen stays in use.
import QtQuick
import com.lindenreed.controls

Item {
    id: info_message

    property string text
    property url icon

    readonly property int mat: Global.pixelsFromDesign(8)
    readonly property int padding: Global.pixelsFromDesign(32)

    signal close()

    anchors.fill: parent

    Rectangle {
        anchors.fill: box
        anchors.margins: -info_message.mat
        color: GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultDialogBorderRadius + info_message.mat
    }

    Rectangle {
        id: box

        readonly property int widest: info_message.width - 2 * GlobalValues.separatorSideOffset
        readonly property int iconSpace: image.visible ? image.width + Global.pixelsFromDesign(24) : 0

        border.color: GlobalValues.defaultBorderColor
        border.width: GlobalValues.dialogBorderWidth
        color: GlobalValues.defaultBackgroundColor
        height: Math.max(image.visible ? image.height : 0, message.height) + 2 * info_message.padding
        radius: GlobalValues.defaultDialogBorderRadius
        width: iconSpace + Math.ceil(message.contentWidth) + 2 * info_message.padding
        x: Math.floor((info_message.width - width) / 2)
        y: info_message.height - GlobalValues.scrollListButtonsHeight - info_message.padding - height

        Accessible.name: info_message.text
        Accessible.role: Accessible.AlertMessage
        Accessible.onPressAction: info_message.close()

        Image {
            id: image

            anchors.left: parent.left
            anchors.leftMargin: info_message.padding
            anchors.verticalCenter: parent.verticalCenter
            source: info_message.icon
            visible: String(info_message.icon) !== ""
            Accessible.ignored: true
        }

        StyledText {
            id: message

            anchors.left: parent.left
            anchors.leftMargin: info_message.padding + box.iconSpace
            anchors.verticalCenter: parent.verticalCenter
            styledFont: FontStyles.BodyL
            text: info_message.text
            width: Math.min(Math.ceil(implicitWidth), box.widest - box.iconSpace - 2 * info_message.padding)
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        MouseArea {
            anchors.fill: parent
            anchors.margins: -info_message.mat
            onClicked: info_message.close()
        }
    }
}
