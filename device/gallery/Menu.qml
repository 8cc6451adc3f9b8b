// A context menu beside the button that it belongs to.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: page

    property string variant

    anchors.fill: parent
    onVariantChanged: {
        menu.visible = false
        const corner = button.mapToGlobal(0, 0)
        const area = Qt.rect(corner.x, corner.y, button.width, button.height)
        // The title of a menu with radio buttons is the row that is checked.
        if (variant === "MenuWithIcons")
            Global.openContextMenuLoader(menu, rows, "ImageTextButton", "Garden in spring", area)
        else if (variant === "MenuWithRadioButtons")
            Global.openContextMenuLoader(menu, rows, "RadioButton", "Show in random order", area)
        else if (variant === "MenuLong")
            Global.openContextMenuLoader(menu, many_rows, "RadioButton", "Summer of 2013", area)
    }

    ListModel {
        id: many_rows

        Component.onCompleted: {
            for (let year = 2000; year < 2030; ++year)
                append({ uid_: year, text_: "Summer of " + year })
        }
    }

    ListModel {
        id: rows

        ListElement { uid_: 0; text_: "Rename"; image_: "edit_word" }
        ListElement { uid_: 1; text_: "Show in random order"; image_: "player2_mode_random" }
        ListElement { uid_: 2; text_: "Delete"; image_: "trash" }
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

        ContextMenu { onClose: menu.visible = false }
    }
}
