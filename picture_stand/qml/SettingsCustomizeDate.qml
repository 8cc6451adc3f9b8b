// Where and in which font a date stands on the picture: a bar of choices over a grey stage. It keeps nothing itself.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    /// One of the two lists of the bar.
    component Choice: ComboBox {
        highlightSelected: true
        show_border: false
        state: "RadioTextButton"
        styledFont: FontStyles.BodyBold
        onIsOpenedChanged: {
            if (!isOpened)
                DeviceInfoProvider.requireFullUpdateHQ() // its menu leaves traces on the panel
        }
    }

    property int current_position: 0
    property string current_font_family: "Roboto" ///< the title of a row of the fonts
    property bool current_font_italic: false
    property bool current_font_bold: false

    signal back()
    signal changePosition(int uid)
    signal chooseFont(string font)
    signal chooseFontStyle(bool bold, bool italic)
    signal done()

    function update_font_style_model() {
        font_style.selectedUid = -1
        font_style_model.clear()
        font_style_model.append({uid_: 0, text_: qsTr("@Regular"), bold_: false, italic_: false})
        const chosen = font_model.get(font.selectedUid)
        if (chosen.hasBold_)
            font_style_model.append({uid_: 1, text_: qsTr("@Bold"), bold_: true, italic_: false})
        if (chosen.hasItalic_)
            font_style_model.append({uid_: 2, text_: qsTr("@Italic"), bold_: false, italic_: true})
        if (chosen.hasBoldItalic_)
            font_style_model.append({uid_: 3, text_: qsTr("@BoldItalic"), bold_: true, italic_: true})
        font_style.selectedUid = current_font_bold && current_font_italic ? 3
            : current_font_bold ? 1 : current_font_italic ? 2 : 0
    }

    function show_position_context_menu() {
        const corner = position_rect.mapToGlobal(0, 0)
        loader.item.transparentRect = Qt.rect(corner.x, corner.y, position_rect.width, header.height - corner.y)
        loader.item.menuItems = position_model
        loader.item.chosen = current_position
        loader.item.show()
    }

    function closePositionMenu() {
        loader.visible = false
        position.forceActiveFocus()
    }

    /// To the next part of the bar, and from the last one to the first.
    function moveFocus(forward) {
        wrapper.Window.activeFocusItem.nextItemInFocusChain(forward).forceActiveFocus()
    }

    Keys.onBackPressed: event => {
        if (!event.isAutoRepeat) // a key that is held leads one screen back
            back()
    }

    Component.onCompleted: {
        font.selectedUid = -1
        let selected = 0
        for (let row = 0; row < FontModel.rowCount(); ++row) {
            const value = role => FontModel.data(FontModel.index(row, 0), role)
            font_model.append({
                text_: value(FontDataRoles.TitleRole),
                uid_: value(FontDataRoles.UidRole),
                family_: value(FontDataRoles.FamilyNameRole),
                normal_: value(FontDataRoles.NormalNameRole),
                bold_: value(FontDataRoles.BoldNameRole),
                italic_: value(FontDataRoles.ItalicNameRole),
                bold_italic_: value(FontDataRoles.BoldItalicNameRole),
                hasBold_: value(FontDataRoles.HasBold),
                hasItalic_: value(FontDataRoles.HasItalic),
                hasBoldItalic_: value(FontDataRoles.HasBoldItalic)
            })
            if (value(FontDataRoles.TitleRole) === current_font_family)
                selected = row
        }
        font.selectedUid = selected
        update_font_style_model()
        font.forceActiveFocus()
    }

    Connections {
        target: App

        function onOrientationChanged() {
            if (loader.visible)
                wrapper.show_position_context_menu()
            font_style.orientationChanged()
            font.orientationChanged()
        }
    }

    ListModel {
        id: position_model

        ListElement {
            uid_: 0
            image_: "positioning_top_left"
            pressedImage_: "positioning_top_left_inv"
            state_: "top_left"
            title_: qsTr("@AccessibilityPositioningTopLeft")
        }
        ListElement {
            uid_: 1
            image_: "positioning_top_right"
            pressedImage_: "positioning_top_right_inv"
            state_: "top_right"
            title_: qsTr("@AccessibilityPositioningTopRight")
        }
        ListElement {
            uid_: 2
            image_: "positioning_bottom_left"
            pressedImage_: "positioning_bottom_left_inv"
            state_: "bottom_left"
            title_: qsTr("@AccessibilityPositioningBottomLeft")
        }
        ListElement {
            uid_: 3
            image_: "positioning_bottom_right"
            pressedImage_: "positioning_bottom_right_inv"
            state_: "bottom_right"
            title_: qsTr("@AccessibilityPositioningBottomRight")
        }
    }

    ListModel {
        id: font_model
    }

    ListModel {
        id: font_style_model
    }

    Rectangle {
        anchors {
            top: header.bottom
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        color: "gray"
    }

    Item {
        id: header

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.defaultAppHeaderHeight + GlobalValues.defaultSolidSeparatorThickness

        Keys.onLeftPressed: wrapper.moveFocus(false)
        Keys.onRightPressed: wrapper.moveFocus(true)

        Rectangle {
            anchors.fill: parent
            color: GlobalValues.defaultBackgroundColor
        }

        Rectangle {
            id: header_line

            anchors {
                bottom: parent.bottom
                left: parent.left
                right: parent.right
            }
            color: GlobalValues.defaultSolidseparatorColor
            height: GlobalValues.defaultSolidSeparatorThickness
        }

        Row {
            id: row

            anchors {
                top: parent.top
                bottom: header_line.top
                left: parent.left
                leftMargin: GlobalValues.defaultAppHeaderMargin
                right: line.left
            }
            spacing: Math.floor(Global.dp(16) / 2) // the fonts leave as much, for the two gaps

            // Without a gap: the button has room of its own around its sign.
            Row {
                anchors.verticalCenter: parent.verticalCenter

                BitmapButton {
                    id: back_button

                    anchors.verticalCenter: parent.verticalCenter
                    icon: "image://resource/back"
                    pressedIcon: "image://resource/back_inv"
                    Accessible.name: qsTr("@Back")
                    onAction: wrapper.back()
                }

                Choice {
                    id: font

                    anchors.verticalCenter: parent.verticalCenter
                    // What the others leave of the row; position_rect and arrow_img lie within position.
                    max_width: row.width - back_button.width - (font_style.visible ? font_style.width : 0)
                        - position.width - Global.dp(16)
                    menuItems: font_model
                    preffix_text: qsTr("@Font") + ": "
                    onChoosed: uid => {
                        wrapper.chooseFont(font_model.get(uid).text_)
                        wrapper.update_font_style_model()
                    }
                }
            }

            Choice {
                id: font_style

                anchors.verticalCenter: parent.verticalCenter
                max_width: Global.dp(340 * 0.53)
                menuItems: font_style_model
                preffix_text: qsTr("@Style") + ": "
                visible: font.selectedUid !== 0 // "default" has no styles
                onChoosed: uid => {
                    // The uid as a row number, by intent: it fails where a style before it is missing.
                    const style = font_style_model.get(uid)
                    wrapper.chooseFontStyle(style.bold_, style.italic_)
                }
            }

            Rectangle {
                id: position

                function open() {
                    loader.visible = true
                }

                activeFocusOnTab: true
                width: Global.dp(140 * 0.53)
                height: parent.height
                color: touch.pressed ? GlobalValues.defaultBorderColor : GlobalValues.defaultBackgroundColor
                radius: GlobalValues.defaultElementBorderRadius

                Accessible.focusable: true
                Accessible.name: qsTr("@Position")
                Accessible.role: Accessible.Button
                Accessible.onPressAction: open()

                Keys.onEnterPressed: open()
                Keys.onReturnPressed: open()

                Item {
                    id: position_rect

                    anchors.verticalCenter: parent.verticalCenter
                    width: Global.dp(94 * 0.53)
                    height: width

                    Image {
                        anchors.fill: parent
                        source: Global.getNormalImage(touch.pressed
                            ? position_model.get(wrapper.current_position).pressedImage_
                            : position_model.get(wrapper.current_position).image_)
                        sourceSize: Qt.size(width, height)
                        Accessible.ignored: true
                    }
                }

                Image {
                    id: arrow_img

                    anchors {
                        right: parent.right
                        rightMargin: Global.dp(10)
                        verticalCenter: parent.verticalCenter
                    }
                    source: touch.pressed ? "image://resource_inv/arrow_down" : "image://resource/arrow_down"
                    Accessible.ignored: true
                }

                Rectangle {
                    id: position_frame

                    anchors {
                        fill: parent
                        margins: Global.pixelsFromDesign(4) // clear of both lines
                    }
                    border.color: GlobalValues.defaultBorderColor
                    border.width: GlobalValues.defaultFocusedElementBorderThickness
                    color: "transparent"
                    radius: GlobalValues.listElementHoverFrameBorderRadius
                    visible: position.activeFocus && !DeviceInfoProvider.isTouchDevice
                }

                MouseArea {
                    id: touch

                    anchors.fill: parent
                    onClicked: position.open()
                }
            }
        }

        Rectangle {
            id: line

            anchors {
                right: done_button.left
                rightMargin: Global.dp(20 * 0.53)
                verticalCenter: row.verticalCenter
            }
            width: Global.dp(1 * 0.53)
            height: Global.dp(76 * 0.53)
            color: "black"
        }

        BitmapButton {
            id: done_button

            anchors {
                right: parent.right
                rightMargin: Global.dp(20 * 0.53)
                verticalCenter: row.verticalCenter
            }
            icon: "image://resource/done"
            pressedIcon: "image://resource/done_inv"
            Accessible.name: qsTr("@Save")
            onAction: wrapper.done()
        }
    }

    LoaderNoSleep {
        id: loader

        anchors.fill: parent
        visible: false
        onLoaded: parent = Window.window.contentItem // over everything
        onVisibleChanged: {
            if (!visible)
                return
            if (status === Loader.Null)
                sourceComponent = position_context_menu
            if (status === Loader.Ready)
                wrapper.show_position_context_menu()
        }
    }

    Component {
        id: position_context_menu

        PositionContextMenu {
            onChoosed: uid => {
                wrapper.closePositionMenu()
                wrapper.changePosition(uid)
                DeviceInfoProvider.requireFullUpdateHQ()
            }
            onClose: {
                wrapper.closePositionMenu()
                DeviceInfoProvider.requireFullUpdateHQ()
            }
        }
    }
}
