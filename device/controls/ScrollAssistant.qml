// Pages a list by a touch in the two lower corners, beside the footer button. Nothing is drawn.
import QtQuick
import com.lindenreed.controls

Item {
    id: scroll_assistant

    signal scrollUp()
    signal scrollDown()

    component Corner: MouseArea {
        anchors.bottom: parent.bottom
        height: GlobalValues.scrollListButtonsHeight
        width: GlobalValues.scrollListCenterButtonSideOffset
        Accessible.role: Accessible.Button
    }

    Corner {
        anchors.left: parent.left
        Accessible.name: qsTr("@PreviousPage")
        Accessible.onPressAction: scroll_assistant.scrollUp()
        onClicked: scroll_assistant.scrollUp()
    }

    Corner {
        anchors.right: parent.right
        Accessible.name: qsTr("@NextPage")
        Accessible.onPressAction: scroll_assistant.scrollDown()
        onClicked: scroll_assistant.scrollDown()
    }
}
