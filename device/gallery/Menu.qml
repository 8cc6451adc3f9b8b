// A context menu beside the button that it belongs to.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: page

    property string variant

    anchors.fill: parent
    onVariantChanged: {
        const corner = button.mapToItem(null, 0, 0)
        const delegate = variant === "MenuWithIcons" ? "ImageTextButton" : "RadioButton"
        Global.openContextMenuLoader(menu, rows, delegate, "Garden in spring",
                                     Qt.rect(corner.x, corner.y, button.width, button.height))
    }

    ListModel {
        id: rows

        ListElement { uid_: 0; text_: "Rename"; image_: "edit_word"; isChecked_: false }
        ListElement { uid_: 1; text_: "Show in random order"; image_: "player2_mode_random"; isChecked_: true }
        ListElement { uid_: 2; text_: "Delete"; image_: "trash"; isChecked_: false }
    }
    BitmapButton {
        id: button

        anchors {
            top: parent.top
            right: parent.right
            margins: GlobalValues.defaultListViewSideMargin
        }
        icon: "image://resource/desktop_app_settings"
    }
    LoaderNoSleep {
        id: menu

        anchors.fill: parent
        visible: false
        onVisibleChanged: sourceComponent = visible ? menu_component : null
    }
    Component {
        id: menu_component

        ContextMenu {}
    }
}
