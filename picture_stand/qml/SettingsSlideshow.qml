// What a show does: how fast, with which dates, in which order, how it fills the screen.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picturestand 1.0

Flickable {
    id: wrapper

    signal back()
    signal changeView(string view)

    /// The unit first: until the seconds follow, the row shows the old seconds in the new unit.
    function apply_picture_time(value, time_index) {
        SettingsModel.change_picture_time_index = time_index
        SettingsModel.change_picture_time = value
        SettingsModel.saveConfig("change_picture_time_index")
        SettingsModel.saveConfig("change_picture_time")
    }

    /// Seconds in their unit: 0 seconds, 1 minutes, 2 hours. Rounded on the way to each. A stored number that is no unit
    /// may be any: nothing comes of 0 seconds.
    function get_change_time(value, timeIdx) {
        while (timeIdx > 0 && value !== 0) {
            value = Math.round(value / 60)
            --timeIdx
        }
        return value
    }

    function get_change_time_text(value, timeIdx) {
        const converted = get_change_time(value, timeIdx)
        const key = timeIdx === 1 ? "@Minute" : timeIdx === 2 ? "@Hour" : "@Second"
        return "%1 %2".arg(converted).arg(qsTr(key, "0", converted))
    }

    function updateCustomTime() {
        const model = change_picture_time_model
        const value = SettingsModel.change_picture_time
        for (let row = 0; row < model.count; ++row) {
            const preset = model.get(row)
            if (row === model.custom_uid || preset.value_ !== value)
                continue
            model.setProperty(model.custom_uid, "text_", qsTr("@CustomTime"))
            model.setProperty(model.custom_uid, "value_", 0)
            menu_change_picter.text = preset.text_
            return // the dialog keeps what it held
        }
        const unit = SettingsModel.change_picture_time_index
        const text = qsTr("%1 (%2)").arg(qsTr("@CustomTime")).arg(get_change_time_text(value, unit))
        model.setProperty(model.custom_uid, "text_", text)
        model.setProperty(model.custom_uid, "value_", value)
        menu_change_picter.text = text
        model.custom_input_value = get_change_time(value, unit)
        model.custom_input_time = unit
    }

    function globalRectangle(row) {
        const corner = row.mapToGlobal(0, 0)
        return Qt.rect(corner.x, corner.y, row.width, row.height)
    }

    boundsBehavior: contentHeight <= height ? Flickable.StopAtBounds : Flickable.DragAndOvershootBounds
    clip: true
    contentHeight: rows.height // of the rows alone, by intent: the header scrolls away with them
    flickableDirection: Flickable.VerticalFlick
    pressDelay: GlobalValues.listPressDelay

    Keys.onBackPressed: event => {
        if (!event.isAutoRepeat) // a key that is held leads one screen back
            back()
    }

    Component.onCompleted: wrapper.forceActiveFocus()
    // Without touch the keys go on to the row that had them last.
    onActiveFocusChanged: {
        if (activeFocus && !DeviceInfoProvider.isTouchDevice)
            content.forceActiveFocus()
    }
    onMovementStarted: {
        // Nothing here has this name: a line in the log, and the flick stays in the panel's normal mode. It has to be so.
        const corner = content_wrapper.mapToGlobal(0, 0) // qmllint disable unqualified
        DeviceInfoProvider.enterA2onFlick(corner.x, corner.y,
                                          content_wrapper.width, // qmllint disable unqualified
                                          content_wrapper.height) // qmllint disable unqualified
    }

    Connections {
        target: SettingsModel

        function onChange_picture_timeChanged() {
            wrapper.updateCustomTime()
        }

        function onChange_picture_time_indexChanged() {
            wrapper.updateCustomTime()
        }
    }

    Connections {
        target: App

        function onOrientationChanged() {
            Qt.inputMethod.hide()
        }
    }

    ListModel {
        id: change_picture_time_model

        property int custom_uid: 7
        property string custom_input_value: ""
        property int custom_input_time: 0

        Component.onCompleted: {
            const presets = [
                ["2 " + qsTr("@Second_2"), 2, 0],
                ["5 " + qsTr("@Second_2"), 5, 0],
                ["10 " + qsTr("@Second_2"), 10, 0],
                ["30 " + qsTr("@Second_2"), 30, 0],
                [qsTr("@1min"), 60, 1],
                [qsTr("@2min"), 120, 1],
                [qsTr("@5min"), 300, 1],
                [qsTr("@CustomTime"), 0, 0]
            ]
            for (const [text, seconds, unit] of presets)
                append({uid_: count, text_: text, value_: seconds, time_index_: unit})
            wrapper.updateCustomTime()
        }
    }

    ListModel {
        id: displaymode_model

        ListElement {
            uid_: 0
            text_: qsTr("@FitToScreenOnBlack")
        }
        ListElement {
            uid_: 1
            text_: qsTr("@FillScreen")
        }
    }

    ListModel {
        id: time_model

        ListElement {
            uid_: 0
            text_: qsTr("@Second", "0", 2)
            multiply_: 1
        }
        ListElement {
            uid_: 1
            text_: qsTr("@Minute", "0", 2)
            multiply_: 60
        }
        ListElement {
            uid_: 2
            text_: qsTr("@Hours")
            multiply_: 3600
        }
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
        title: qsTr("@SlideshowSettings")
        onClose: wrapper.back()
    }

    // A scope: it remembers which row had the keys.
    FocusScope {
        id: content

        anchors {
            top: header.bottom
            left: parent.left
            leftMargin: GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius
            right: parent.right
            rightMargin: GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius
        }
        height: rows.height

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

        Column {
            id: rows

            width: parent.width

            SettingsBitmapTextTextButton {
                id: menu_change_picter

                focus: true
                image_src: "image://resource/validity_date"
                image_src_pressed: "image://resource_inv/validity_date"
                title: qsTr("@ChangePictureEvery")
                onAction: Global.openContextMenuLoader(loader_change_picture_time, change_picture_time_model,
                                                       "RadioButton", text, wrapper.globalRectangle(this))

                Separator {
                    sideMargin: menu_change_picter.radius
                }
            }

            SettingsBitmapTextTextButton {
                id: menu_created_date

                image_src: "image://resource/photo_created_date"
                image_src_pressed: "image://resource_inv/photo_created_date"
                text: "..."
                title: qsTr("@PhotoCreatedDate")
                onAction: wrapper.changeView("settings_created_datetime")

                Separator {
                    sideMargin: menu_created_date.radius
                }
            }

            SettingsBitmapTextTextButton {
                id: menu_datetime

                image_src: "image://resource/desktop_app_calendar"
                image_src_pressed: "image://resource_inv/desktop_app_calendar"
                text: "..."
                title: qsTr("@CurrentDateTime")
                onAction: wrapper.changeView("settings_current_datetime")

                Separator {
                    sideMargin: menu_datetime.radius
                }
            }

            SettingsBitmapTextSwitcher {
                id: menu_shuffle

                image_src: "image://resource/player2_mode_random"
                image_src_pressed: "image://resource_inv/player2_mode_random"
                switch_value: SettingsModel.shuffle
                title: qsTr("@Shuffle")
                onAction: {
                    SettingsModel.shuffle = !menu_shuffle.switch_value
                    SettingsModel.saveConfig("shuffle")
                }

                Separator {
                    sideMargin: menu_shuffle.radius
                }
            }

            SettingsBitmapTextTextButton {
                id: menu_displaymode

                image_src: "image://resource/display_mode"
                image_src_pressed: "image://resource_inv/display_mode"
                // A stored mode that is none leaves the row without a text.
                text: displaymode_model.get(SettingsModel.display_mode).text_
                title: qsTr("@DisplayMode")
                onAction: Global.openContextMenuLoader(loader_displaymode, displaymode_model, "RadioButton", text,
                                                       wrapper.globalRectangle(this))

                Separator {
                    sideMargin: menu_displaymode.radius
                }
            }
        }
    }

    LoaderNoSleep {
        id: loader_change_picture_time

        anchors.fill: parent
        visible: false
        onLoaded: parent = Window.window.contentItem // over everything
        onVisibleChanged: {
            if (visible && status === Loader.Null)
                sourceComponent = change_picture_time_menu
        }
    }

    Component {
        id: change_picture_time_menu

        ContextMenu {
            radioBtnDontCheckChecked: true
            onChoosed: uid => {
                if (uid === change_picture_time_model.custom_uid) {
                    loader_custom_interval.open()
                } else {
                    const preset = change_picture_time_model.get(uid)
                    wrapper.apply_picture_time(preset.value_, preset.time_index_)
                }
                loader_change_picture_time.visible = false
            }
            onClose: loader_change_picture_time.visible = false
        }
    }

    LoaderNoSleep {
        id: loader_displaymode

        anchors.fill: parent
        visible: false
        onLoaded: parent = Window.window.contentItem // over everything
        onVisibleChanged: {
            if (visible && status === Loader.Null)
                sourceComponent = displaymode_menu
        }
    }

    Component {
        id: displaymode_menu

        ContextMenu {
            onChoosed: uid => {
                SettingsModel.display_mode = uid
                SettingsModel.saveConfig("display_mode")
                loader_displaymode.visible = false
            }
            onClose: loader_displaymode.visible = false
        }
    }

    LoaderNoSleep {
        id: loader_custom_interval

        function open() {
            visible = true
        }

        function close() {
            content.forceActiveFocus()
            visible = false
        }

        anchors.fill: parent
        parent: wrapper.Window.contentItem
        sourceComponent: custom_interval
        visible: false
    }

    Component {
        id: custom_interval

        DialogContainer {
            state: "VerticalTop"
            title: qsTr("@SetCustomInterval")
            verticalOffset: Global.dp(120 * 0.53)
            onClose: loader_custom_interval.close()
            onVisibleChanged: {
                if (visible)
                    input.forceActiveFocus()
                else
                    wrapper.forceActiveFocus()
            }

            Connections {
                target: App

                function onOrientationChanged() {
                    time.orientationChanged()
                }
            }

            Item {
                height: Global.dp(200 * 0.53)
                width: parent.width

                Row {
                    anchors.centerIn: parent
                    spacing: Global.dp(20 * 0.53)

                    Rectangle {
                        width: Global.dp(150 * 0.53)
                        height: GlobalValues.defaultAppHeaderHeight
                        border.color: "black"
                        border.width: 3

                        AdvancedTextInput {
                            id: input

                            /// What the validator takes beside digits, a sign or separators of groups, goes first.
                            function validate() {
                                if (text === "")
                                    return
                                const digits = text.replace(/\D/g, "")
                                if (digits !== text)
                                    replace(digits)
                                else if (text > int_validator.top)
                                    replace(int_validator.top)
                                else if (text < int_validator.bottom)
                                    replace(int_validator.bottom)
                            }

                            /// An assignment would end the binding of the text.
                            function replace(number) {
                                clear()
                                insert(0, number)
                            }

                            anchors.fill: parent
                            horizontalAlignment: TextInput.AlignHCenter
                            inputMethodHints: Qt.ImhDigitsOnly
                            styledFont: FontStyles.Heading5
                            text: change_picture_time_model.custom_input_value
                            verticalAlignment: TextInput.AlignVCenter
                            validator: IntValidator {
                                id: int_validator

                                bottom: 1
                                // A day.
                                top: 24 * (time.selectedUid === 2 ? 1 : (time.selectedUid === 1 ? 60 : (60 * 60)))
                                onTopChanged: input.validate()
                            }
                            Accessible.name: qsTr("@ChangePictureEvery")
                            onTextChanged: validate()
                        }
                    }

                    ComboBox {
                        id: time

                        anchors.verticalCenter: parent.verticalCenter
                        highlightSelected: true
                        menuItems: time_model
                        selectedUid: change_picture_time_model.custom_input_time
                        show_border: true
                        state: "RadioTextButton"
                        styledFont: FontStyles.Heading5
                        width: Global.dp(315 * 0.53)
                        onIsOpenedChanged: forceActiveFocus()
                    }
                }
            }

            DialogFooter {
                applyTitle: qsTr("@Save")
                isUppercase: true
                onApply: {
                    const unit = time_model.get(time.selectedUid) // none for a stored number that is no unit
                    if (input.text !== "" && unit)
                        wrapper.apply_picture_time(unit.multiply_ * input.text, time.selectedUid)
                    loader_custom_interval.close()
                }
                onCancel: loader_custom_interval.close()
            }
        }
    }
}
