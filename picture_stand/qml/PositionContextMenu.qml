// A menu of pictures below an area, with a pointer at its middle: where something is to stand on the screen.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: wrapper

    property rect transparentRect: Qt.rect(0, 0, 0, 0) ///< what the menu belongs to, in this item's coordinates
    property ListModel menuItems
    property int menuWidth: Global.dp(200 * 0.53)
    property int menuHeight: Global.dp(150 * 0.53)
    property int max_elements_in_row: 4
    property int width_element: 100
    property int height_element: 100
    property int margin_items: Global.dp(40 * 0.53)
    property int chosen: -1 ///< the uid of the item in force, where the keys begin

    signal choosed(int uid)
    signal close()

    /// Finds size and place anew.
    function show() {
        first_image.source = Global.getNormalImage(menuItems.get(0).image_)
        width_element = first_image.sourceSize.width
        height_element = first_image.sourceSize.height

        const sides = inner.anchors.leftMargin + inner.anchors.rightMargin
        const inRow = Math.min(menuItems.count, max_elements_in_row)
        const center = transparentRect.x + transparentRect.width / 2
        menuWidth = sides + inRow * (width_element + margin_items)
        menuHeight = inner.anchors.topMargin + inner.anchors.bottomMargin
            + Math.ceil(menuItems.count / inRow) * height_element

        const edge = GlobalValues.separatorSideOffset
        let right = width - (center + menuWidth / 2)
        if (center + menuWidth / 2 > width - edge)
            right = edge
        else if (width - right - menuWidth < edge)
            right = width - edge - menuWidth
        right = Math.round(right) // whole pixels, or the frame would be grey
        menu.anchors.rightMargin = right
        pointer.anchors.rightMargin = Math.round(width - center - right + pointer.height / 2)

        inner.currentIndex = 0
        for (let row = 1; row < menuItems.count; ++row) {
            if (menuItems.get(row).uid_ === chosen)
                inner.currentIndex = row
        }
        inner.forceActiveFocus()
    }

    anchors.fill: parent

    Keys.onPressed: event => {
        event.accepted = true // all keys are the menu's
        if (!event.isAutoRepeat && (event.key === Qt.Key_Back || event.key === Qt.Key_Escape))
            close()
    }

    MouseArea {
        anchors.fill: parent
        Accessible.name: qsTr("@Close")
        Accessible.role: Accessible.Button
        Accessible.onPressAction: wrapper.close()
        onClicked: wrapper.close()
    }

    // Tells how large the pictures are.
    Image {
        id: first_image

        visible: false
    }

    // Keeps the frame clear of what lies behind.
    Rectangle {
        id: mat

        readonly property int margin: Global.pixelsFromDesign(8)

        anchors {
            fill: menu
            margins: -margin
        }
        color: GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultDialogBorderRadius + margin
    }

    Rectangle {
        id: menu

        anchors {
            top: parent.top
            topMargin: wrapper.transparentRect.y + wrapper.transparentRect.height
                + (pointer.width - border.width)
            right: parent.right
        }
        width: wrapper.menuWidth
        height: wrapper.menuHeight
        border.color: GlobalValues.defaultBorderColor
        border.width: GlobalValues.dialogBorderWidth
        color: GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultDialogBorderRadius

        Accessible.name: qsTr("@Position")
        Accessible.role: Accessible.PopupMenu

        // Nothing here is outside, nor on the mat.
        MouseArea {
            anchors {
                fill: parent
                margins: -mat.margin
            }
        }

        GridView {
            id: inner

            anchors {
                fill: parent
                topMargin: GlobalValues.defaultMenuMargin + menu.border.width
                bottomMargin: GlobalValues.defaultMenuMargin + menu.border.width
                leftMargin: wrapper.margin_items / 2 + menu.border.width
                rightMargin: wrapper.margin_items / 2 + menu.border.width
            }
            cellWidth: wrapper.width_element + wrapper.margin_items
            cellHeight: wrapper.height_element
            highlightFollowsCurrentItem: false
            interactive: false
            keyNavigationEnabled: true
            model: wrapper.menuItems

            delegate: Item {
                id: cell

                required property int index
                required property int uid_
                required property string image_
                required property string pressedImage_
                required property string title_

                width: inner.cellWidth
                height: inner.cellHeight

                Accessible.checkable: true
                Accessible.checked: uid_ === wrapper.chosen
                Accessible.focusable: true
                Accessible.name: title_
                Accessible.role: Accessible.ListItem
                Accessible.onPressAction: wrapper.choosed(uid_)

                Keys.onEnterPressed: wrapper.choosed(uid_)
                Keys.onReturnPressed: wrapper.choosed(uid_)

                Image {
                    anchors.centerIn: parent
                    source: Global.getNormalImage(touch.pressed ? cell.pressedImage_ : cell.image_)
                    Accessible.ignored: true
                }

                Rectangle {
                    anchors {
                        fill: parent
                        topMargin: -border.width
                        bottomMargin: -border.width
                    }
                    border.color: GlobalValues.defaultBorderColor
                    border.width: GlobalValues.defaultFocusedElementBorderThickness
                    color: "transparent"
                    radius: GlobalValues.listElementHoverFrameBorderRadius
                    visible: cell.activeFocus && !DeviceInfoProvider.isTouchDevice
                }

                MouseArea {
                    id: touch

                    anchors.fill: parent
                    onClicked: wrapper.choosed(cell.uid_)
                }
            }
        }
    }

    // Turned about its corner it stands on the upper edge, and its open side covers the line there.
    Image {
        id: pointer

        anchors {
            bottom: menu.top
            bottomMargin: -menu.border.width
            right: menu.right
        }
        rotation: 90
        source: "image://resource/context_menu_pointer"
        transformOrigin: Item.BottomRight
        Accessible.ignored: true
    }
}
