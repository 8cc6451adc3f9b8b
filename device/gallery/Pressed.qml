// What a finger is on, or what has the keys' attention. There is one finger and one focus: each control has it for a
// moment, and its picture is put over it.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as Controls2
import device_gallery 1.0

Item {
    id: page

    property string variant

    function show(item: Item, picture: url): void {
        const corner = item.mapToItem(page, 0, 0)
        pictures.append({ cornerX: corner.x, cornerY: corner.y, picture: String(picture) })
    }

    function focusAll(): void {
        const seen = []
        let item = page.nextItemInFocusChain(true)
        while (item && !seen.includes(item)) {
            seen.push(item)
            item.forceActiveFocus(Qt.TabFocusReason)
            show(item, Finger.pictureOf(item))
            item = item.nextItemInFocusChain(true)
        }
    }

    function holdAll(): void {
        const middle = item => Qt.point(item.width / 2, item.height / 2)
        for (const held of [
            { item: header, point: Qt.point(Global.pixelsFromDesign(80), header.height / 2) },
            { item: selection, point: Qt.point(selection.width - Global.pixelsFromDesign(100), selection.height / 2) },
            { item: crumbs, point: Qt.point(Global.pixelsFromDesign(260), crumbs.height / 2) },
            { item: value_row, point: middle(value_row) },
            { item: switch_row, point: middle(switch_row) },
            { item: text_button, point: middle(text_button) },
            { item: combo_box, point: middle(combo_box) },
            { item: dialog_footer, point: Qt.point(dialog_footer.width * 3 / 4, dialog_footer.height / 2) },
            { item: footer_button, point: middle(footer_button) }
        ])
            show(held.item, Finger.pictureOfHeld(held.item, held.point))
    }

    function takePictures(): void {
        pictures.clear()
        if (variant === "Focused")
            focusAll()
        else
            holdAll()
    }

    anchors.fill: parent
    onHeightChanged: Qt.callLater(takePictures)
    onVariantChanged: Qt.callLater(takePictures)

    ListModel { id: pictures }

    Column {
        width: parent.width
        spacing: Global.pixelsFromDesign(16)

        Controls2.AppHeader {
            id: header

            width: parent.width
            title: page.variant
            closeIcon: "image://resource/home"
            closePressedIcon: "image://resource/home_inv"
        }
        GroupSelectionPanel {
            id: selection

            width: parent.width
            items_count: 24
            selected_count: 24
            selected_label_text: "selected"
            select_all_title: "All"
        }
        Controls2.Breadcrumbs {
            id: crumbs

            width: parent.width
            model: ListModel {
                ListElement { name: "" }
                ListElement { name: "This device" }
                ListElement { name: "Photo" }
            }
        }
        SettingsBitmapTextTextButton {
            id: value_row

            x: GlobalValues.separatorSideOffset
            width: parent.width - 2 * x
            title: "Interval"
            text: "5 minutes"
            image_src: "image://resource/validity_date"
            image_src_pressed: "image://resource_inv/validity_date"
        }
        SettingsBitmapTextSwitcher {
            id: switch_row

            x: GlobalValues.separatorSideOffset
            width: parent.width - 2 * x
            title: "Random order"
            image_src: "image://resource/player2_mode_random"
            image_src_pressed: "image://resource_inv/player2_mode_random"
            switch_value: true
        }
        Row {
            x: GlobalValues.defaultListViewSideMargin
            spacing: Global.pixelsFromDesign(32)

            TextButton {
                id: text_button

                text: "Add"
            }
            ComboBox {
                id: combo_box

                menuItems: ListModel {
                    ListElement { uid_: 0; text_: "Seconds" }
                }
                selectedUid: 0
                show_border: true
            }
        }
        DialogFooter {
            id: dialog_footer

            width: parent.width
            applyTitle: "Save"
        }
    }

    RoundedCornerButtonContainer {
        id: footer_button

        anchors {
            bottom: parent.bottom
            horizontalCenter: parent.horizontalCenter
        }
        width: parent.width - 2 * GlobalValues.scrollListCenterButtonSideOffset
        height: GlobalValues.scrollListButtonsHeight
        visibleBorders: [1, 1, 0, 1]

        StyledText {
            anchors.centerIn: parent
            styledFont: FontStyles.Heading5
            color: footer_button.hovered ? footer_button.backgroundColor : footer_button.hoveredColor
            text: "Play"
        }
    }

    Repeater {
        model: pictures

        Image {
            required property real cornerX
            required property real cornerY
            required property string picture

            x: cornerX
            y: cornerY
            source: picture
        }
    }
}
