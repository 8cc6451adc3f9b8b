// Whether a show tells when its pictures were taken, and the way to how it does. The screen of the other date is made of
// it.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picturestand 1.0

Flickable {
    id: wrapper

    property string title
    property string shownKey: "created_date_show" ///< of the setting
    property string switchIcon: "photo_created_date"
    property string switchTitle: qsTr("@ShowPhotoCreatedDate")

    signal back()
    signal customize()

    boundsBehavior: contentHeight <= height ? Flickable.StopAtBounds : Flickable.DragAndOvershootBounds
    clip: true
    contentHeight: content.height // of the rows alone, by intent: the header scrolls away with them
    flickableDirection: Flickable.VerticalFlick
    pressDelay: GlobalValues.listPressDelay

    Keys.onBackPressed: event => {
        if (!event.isAutoRepeat) // a key that is held leads one screen back
            back()
    }

    Component.onCompleted: wrapper.forceActiveFocus()
    // Without touch the keys begin at the first row.
    onActiveFocusChanged: {
        if (activeFocus && !DeviceInfoProvider.isTouchDevice)
            menu_show.forceActiveFocus()
    }
    onMovementStarted: {
        // Nothing here has this name: a line in the log, and the flick stays in the panel's normal mode. It has to be so.
        const corner = content_wrapper.mapToGlobal(0, 0) // qmllint disable unqualified
        DeviceInfoProvider.enterA2onFlick(corner.x, corner.y,
                                          content_wrapper.width, // qmllint disable unqualified
                                          content_wrapper.height) // qmllint disable unqualified
    }

    LRControls2.AppHeader {
        id: header

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        closeIcon: "image://resource/back"
        closePressedIcon: "image://resource/back_inv"
        title: wrapper.title
        onClose: wrapper.back()
    }

    Column {
        id: content

        component Separator: DottedSeparator {
            required property int sideMargin

            anchors {
                bottom: parent.bottom
                left: parent.left
                leftMargin: sideMargin
                right: parent.right
                rightMargin: sideMargin
            }
            color: GlobalValues.defaultSolidseparatorColor
            height: GlobalValues.defaultSolidSeparatorThickness
        }

        anchors {
            top: header.bottom
            left: parent.left
            leftMargin: GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius
            right: parent.right
            rightMargin: GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius
        }

        SettingsBitmapTextSwitcher {
            id: menu_show

            image_src: "image://resource/" + wrapper.switchIcon
            image_src_pressed: "image://resource_inv/" + wrapper.switchIcon
            switch_value: SettingsModel[wrapper.shownKey]
            title: wrapper.switchTitle
            onAction: {
                SettingsModel[wrapper.shownKey] = !menu_show.switch_value
                SettingsModel.saveConfig(wrapper.shownKey)
            }

            Separator {
                sideMargin: menu_show.radius
            }
        }

        SettingsBitmapTextTextButton {
            id: menu_customize

            image_src: "image://resource/scribble_text_tool"
            image_src_pressed: "image://resource_inv/scribble_text_tool"
            text: "..."
            title: qsTr("@CustomizeFontAndPositioning")
            onAction: wrapper.customize()

            Separator {
                sideMargin: menu_customize.radius
            }
        }
    }
}
