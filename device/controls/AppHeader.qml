// Title bar of a screen: a close button, the title, and at the right the buttons that are given as children, which
// the header puts in a row: they need no anchors.
import QtQuick
import com.lindenreed.controls

Item {
    id: app_header

    property string title
    property url closeIcon
    property url closePressedIcon
    property int rightButtonsOffset: GlobalValues.defaultAppHeaderMargin
    default property alias buttons: right_buttons.data

    signal close()

    /// The next button that can be used to the left (-1) or right (1) gets the keys' attention; false: there is none.
    function moveFocus(step: int): bool {
        const row = [close_button]
        for (let i = 0; i < right_buttons.children.length; ++i)
            row.push(right_buttons.children[i])
        let at = row.findIndex(button => button.activeFocus)
        if (at < 0)
            return false
        for (at += step; at >= 0 && at < row.length; at += step) {
            if (row[at].activeFocusOnTab && row[at].enabled && row[at].visible) {
                row[at].forceActiveFocus(step > 0 ? Qt.TabFocusReason : Qt.BacktabFocusReason)
                return true
            }
        }
        return false
    }

    implicitHeight: GlobalValues.defaultAppHeaderHeight
    implicitWidth: parent ? parent.width : 0

    Keys.onLeftPressed: event => event.accepted = moveFocus(-1)
    Keys.onRightPressed: event => event.accepted = moveFocus(1)

    BitmapButton {
        id: close_button

        anchors.left: parent.left
        anchors.leftMargin: GlobalValues.defaultAppHeaderMargin
        height: app_header.height
        icon: app_header.closeIcon
        pressedIcon: app_header.closePressedIcon
        // What the sign says; there is no word beside it.
        Accessible.name: String(app_header.closeIcon).endsWith("/back") ? qsTr("@Back") : qsTr("@Close")
        onAction: app_header.close()
    }

    StyledText {
        anchors.left: close_button.right
        anchors.right: right_buttons.left
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideRight
        maximumLineCount: 1
        styledFont: FontStyles.Heading3
        text: app_header.title
        Accessible.role: Accessible.Heading
    }

    Row {
        id: right_buttons

        anchors.right: parent.right
        anchors.rightMargin: app_header.rightButtonsOffset
        anchors.verticalCenter: parent.verticalCenter
    }

    Rectangle {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        color: GlobalValues.defaultBorderColor
        height: GlobalValues.defaultSolidSeparatorThickness
    }
}
