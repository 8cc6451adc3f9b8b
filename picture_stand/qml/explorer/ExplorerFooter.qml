// The layer over a list: where it stands, the corners that page it, and the big button at its foot, which does what the
// state of the two models asks for, with the dialogs that this takes.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property QtObject grid ///< the list it serves, a GridView
    property string textButton: qsTr("@PlayItem")
    property string imageSource: "audio_book_play"

    readonly property GridView list: grid as GridView
    readonly property bool scrolls: DeviceInfoProvider.isTouchDevice && list !== null
        && list.contentHeight > list.height

    /// The page keys, for the list that has the focus.
    function pressed(event) {
        if (event.key === Qt.Key_PageDown)
            Global.scrollFlickablePageDown(list)
        else if (event.key === Qt.Key_PageUp)
            Global.scrollFlickablePageUp(list)
    }

    /// The keys go to the button.
    function takeFocus() {
        button.forceActiveFocus(Qt.TabFocusReason)
    }

    /// What the button is for, beside making a playlist and starting a show.
    function picks() {
        return PlaylistModel.mode === PlaylistDataRoles.AddMode || PlaylistModel.mode === PlaylistDataRoles.CreateMode
    }

    function deletes() {
        return PlaylistModel.mode === PlaylistDataRoles.ViewMode && FolderModel.mode === FolderModelModeRoles.SelectionMode
    }

    function refreshText() {
        if (picks()) {
            textButton = PlaylistModel.mode === PlaylistDataRoles.AddMode ? qsTr("@AddPhotos") : qsTr("@CreatePlaylist")
            imageSource = ""
        } else if (PlaylistModel.mode === PlaylistDataRoles.AllViewMode) {
            textButton = qsTr("@New_playlist")
            imageSource = "plus_add"
        } else if (deletes()) {
            textButton = qsTr("@Delete")
            imageSource = "trash"
        } else {
            textButton = qsTr("@PlayItem")
            imageSource = "audio_book_play"
        }
    }

    function addSelected() {
        PlaylistModel.addImagesToPlaylist(FolderModel.getSelected())
        const message = PlaylistModel.getImagesAddedMessage()
        const icon = "image://resource/icon_done"
        FolderModel.clearSelection()
        PlaylistModel.mode = PlaylistDataRoles.ViewMode
        FolderModel.mode = FolderModelModeRoles.NormalMode
        FolderModel.clearListIgnoreSelection()
        FolderModel.loadFromList(PlaylistModel.getImagesById(PlaylistModel.activeId))
        App.showInfoMessage(message, icon)
        App.changeView("playlist")
    }

    function deleteSelected() {
        PlaylistModel.deleteImages(PlaylistModel.activeId, FolderModel.getSelected())
        FolderModel.loadFromList(PlaylistModel.getImagesById(PlaylistModel.activeId))
        FolderModel.clearSelection()
        FolderModel.mode = FolderModelModeRoles.NormalMode
    }

    function runAction() {
        if (picks())
            addSelected()
        else if (PlaylistModel.mode === PlaylistDataRoles.AllViewMode)
            title_dialog.open()
        else if (deletes())
            deleteSelected()
        else
            tryRunSlideShow()
    }

    function openEdit(title) {
        title_dialog.openEdit(title)
    }

    function tryRunSlideShow() {
        if (SettingsModel.isFirstRun)
            first_run.open()
        else
            runSlideshow()
    }

    // The stored count decides; the show itself drops pictures whose file has vanished.
    function runSlideshow() {
        const row = PlaylistModel.index(PlaylistModel.getIndexById(PlaylistModel.activeId), 0)
        if (!(PlaylistModel.data(row, PlaylistDataRoles.CountRole) > 0))
            return
        SlideshowModel.initFromList(PlaylistModel.getImagesById(PlaylistModel.activeId),
                                    SettingsModel.change_picture_time)
        SlideshowModel.shuffleChange(SettingsModel.shuffle)
        SlideshowModel.start()
        App.changeView("slideshow")
    }

    Component.onCompleted: refreshText()

    Connections {
        target: PlaylistModel

        function onModeChanged() {
            wrapper.refreshText()
        }
    }

    Connections {
        target: FolderModel

        function onModeChanged() {
            wrapper.refreshText()
        }
    }

    ScrollIndicator {
        id: scrollBar

        readonly property real contentHeight: wrapper.list?.contentHeight ?? 0
        readonly property real listHeight: wrapper.list?.height ?? 0
        readonly property real realContentY: (wrapper.list?.contentY ?? 0) + (wrapper.list?.headerItem?.height ?? 0)

        anchors {
            top: parent.top
            right: parent.right
        }
        height: length
        indicatorLength: Math.max(listHeight * height / Math.max(contentHeight, 1),
                                  GlobalValues.scrollIndicatorMinimalLenght)
        length: wrapper.height - GlobalValues.scrollListButtonsHeight
        offset: (length - indicatorLength) * realContentY / Math.max(contentHeight - listHeight, 1)
        visible: wrapper.scrolls
    }

    LRControls2.ScrollAssistant {
        anchors.fill: parent
        visible: wrapper.scrolls
        onScrollDown: Global.scrollFlickablePageDown(wrapper.list)
        onScrollUp: Global.scrollFlickablePageUp(wrapper.list)
    }

    // Takes what a disabled button lets through: the list behind it must not have it.
    MouseArea {
        anchors.fill: button
    }

    RoundedCornerButtonContainer {
        id: button

        anchors {
            bottom: parent.bottom
            horizontalCenter: parent.horizontalCenter
        }
        border.color: GlobalValues.defaultSolidseparatorColor
        border.width: GlobalValues.minimalLineThickness
        enabled: !wrapper.picks() && !wrapper.deletes() || FolderModel.countSelected > 0
        height: GlobalValues.scrollListButtonsHeight
        radius: GlobalValues.defaultElementBorderRadius
        visibleBorders: [1, 1, 0, 1]
        width: parent.width - 2 * GlobalValues.scrollListCenterButtonSideOffset

        Accessible.name: wrapper.textButton
        KeyNavigation.up: wrapper.list

        onClicked: {
            if (enabled)
                wrapper.runAction()
        }

        Row {
            anchors.centerIn: parent
            spacing: Global.pixelsFromDesign(10)

            Image {
                id: image

                anchors.verticalCenter: parent.verticalCenter
                fillMode: Image.Pad
                horizontalAlignment: Image.AlignLeft
                opacity: button.enabled ? 1 : 86 / 256 // #AAAAAA, as the text
                source: wrapper.imageSource === "" ? ""
                    : (button.enabled && button.hovered ? "image://resource_inv/" : "image://resource/")
                      + wrapper.imageSource
                visible: wrapper.imageSource !== ""
                width: visible ? implicitWidth + Global.pixelsFromDesign(14) : 0
                Accessible.ignored: true
            }

            StyledText {
                anchors.verticalCenter: parent.verticalCenter
                color: !button.enabled ? GlobalValues.defaultDisabledTextColor
                    : button.hovered ? button.backgroundColor : button.hoveredColor
                elide: Text.ElideRight
                maximumLineCount: 1
                styledFont: FontStyles.Heading5
                text: wrapper.textButton
                width: Math.min(implicitWidth,
                                button.width - image.width - Global.pixelsFromDesign(10))
                Accessible.ignored: true
            }
        }
    }

    LoaderNoSleep {
        id: first_run

        property bool isSecond: false

        /// Always from the first dialog on: an earlier start may have been given up at the second.
        function open() {
            isSecond = false
            visible = true
        }

        anchors.fill: parent
        parent: wrapper.Window.contentItem
        visible: false
        onVisibleChanged: {
            if (visible && status === Loader.Null)
                sourceComponent = first_run_dialogs
        }
    }

    Component {
        id: first_run_dialogs

        Item {
            DialogContainer {
                anchors.fill: parent
                dialogWidth: GlobalValues.confirmationDialogWidth
                state: "VerticalTop"
                title: qsTr("@picture_stand")
                visible: !first_run.isSecond
                onClose: first_run.visible = false

                Item {
                    height: Global.dp(700 * 0.53)
                    width: parent.width

                    Column {
                        anchors {
                            left: parent.left
                            right: parent.right
                            margins: GlobalValues.dialogSidePadding
                        }
                        spacing: Global.pixelsFromDesign(8)
                        // In the middle of what the button leaves, however many lines there are.
                        y: Math.round((continue_button.y - height) / 2)

                        Item {
                            anchors.horizontalCenter: parent.horizontalCenter
                            height: width
                            width: Global.dp(190 * 0.53)

                            Image {
                                anchors.centerIn: parent
                                height: width
                                source: "image://resource/ci_device_email"
                                sourceSize: Qt.size(width, height)
                                width: Global.dp(134 * 0.53)
                                Accessible.ignored: true
                            }

                            Image {
                                anchors.centerIn: parent
                                height: width
                                source: "image://resource/audio_book_play"
                                sourceSize: Qt.size(width, height)
                                width: Global.dp(38 * 0.53)
                                Accessible.ignored: true
                            }
                        }

                        StyledText {
                            horizontalAlignment: Text.AlignHCenter
                            styledFont: FontStyles.Heading3
                            text: qsTr("@DeviceWontTurnOffUntilYouStopPlayback")
                            width: parent.width
                            wrapMode: Text.WordWrap
                        }

                        StyledText {
                            horizontalAlignment: Text.AlignHCenter
                            styledFont: FontStyles.BodyS
                            text: qsTr("@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff")
                            width: parent.width
                            wrapMode: Text.WordWrap
                        }
                    }

                    TextButton {
                        id: continue_button

                        anchors {
                            bottom: parent.bottom
                            bottomMargin: Global.pixelsFromDesign(36)
                            horizontalCenter: parent.horizontalCenter
                        }
                        text: qsTr("@Continue")
                        width: Math.max(implicitWidth, Global.pixelsFromDesign(440))
                        onAction: first_run.isSecond = true
                    }
                }
            }

            DialogContainer {
                anchors.fill: parent
                dialogWidth: GlobalValues.confirmationDialogWidth
                state: "VerticalTop"
                title: qsTr("@picture_stand")
                visible: first_run.isSecond
                onClose: first_run.visible = false

                Item {
                    height: Global.dp(420 * 0.53)
                    width: parent.width

                    Image {
                        id: interval_sign

                        anchors {
                            top: parent.top
                            topMargin: Global.pixelsFromDesign(32)
                            left: parent.left
                            leftMargin: GlobalValues.dialogSidePadding
                        }
                        source: "image://resource/validity_date"
                        Accessible.ignored: true
                    }

                    StyledText {
                        anchors {
                            left: interval_sign.right
                            leftMargin: Global.pixelsFromDesign(24)
                            right: parent.right
                            rightMargin: GlobalValues.dialogSidePadding
                            verticalCenter: interval_sign.verticalCenter
                        }
                        elide: Text.ElideRight
                        maximumLineCount: 1
                        styledFont: FontStyles.BodyL
                        text: qsTr("@ChangePictureEvery")
                    }

                    ComboBox {
                        id: interval

                        anchors {
                            top: interval_sign.bottom
                            topMargin: Global.pixelsFromDesign(24)
                            left: interval_sign.right
                            leftMargin: Global.pixelsFromDesign(24)
                            right: parent.right
                            rightMargin: GlobalValues.dialogSidePadding
                        }
                        menuItems: intervals
                        selectedUid: 3 // whatever the setting is; it stays until something is chosen
                        show_border: true
                        state: "RadioTextButton"
                        onChoosed: uid => {
                            const choice = intervals.get(uid)
                            SettingsModel.change_picture_time_index = choice.time_index_
                            SettingsModel.change_picture_time = choice.value_
                            SettingsModel.saveConfig("change_picture_time_index")
                            SettingsModel.saveConfig("change_picture_time")
                        }
                    }

                    TextButton {
                        anchors {
                            top: interval.bottom
                            topMargin: Global.pixelsFromDesign(24)
                            left: interval.left
                            right: interval.right
                        }
                        text: qsTr("@StartPlayback")
                        onAction: {
                            SettingsModel.isFirstRun = false
                            SettingsModel.saveConfig("is_first_run")
                            wrapper.runSlideshow()
                            first_run.visible = false // an empty playlist starts nothing
                        }
                    }
                }
            }

            ListModel {
                id: intervals

                Component.onCompleted: {
                    const seconds = [2, 5, 10, 30]
                    const minutes = [1, 2, 5]
                    for (const value of seconds)
                        append({uid_: count, text_: value + " " + qsTr("@Second_2"), value_: value, time_index_: 0})
                    for (const value of minutes)
                        append({uid_: count, text_: qsTr("@" + value + "min"), value_: value * 60, time_index_: 1})
                }
            }
        }
    }

    LoaderNoSleep {
        id: title_dialog

        property bool isAdd: true
        property string title

        function open() {
            isAdd = true
            visible = true
        }

        function openEdit(newTitle) {
            title = newTitle
            isAdd = false
            visible = true
        }

        function close() {
            Qt.inputMethod.hide()
            visible = false
        }

        function apply(text) {
            if (text === "") {
                // Nothing is made of it.
            } else if (isAdd) {
                PlaylistModel.activeId = PlaylistModel.addItem(text)
                PlaylistModel.mode = PlaylistDataRoles.CreateMode
                FolderModel.mode = FolderModelModeRoles.SelectionMode
                FolderModel.setListIgnoreSelection(PlaylistModel.getImagesById(PlaylistModel.activeId))
                FolderModel.restore()
                App.changeView("select_photos")
            } else {
                PlaylistModel.editItem(PlaylistModel.activeId, text)
            }
            close()
        }

        anchors.fill: parent
        parent: wrapper.Window.contentItem
        visible: false
        // Later: the dialog notes first where the focus was.
        onLoaded: Qt.callLater(item.begin)
        onVisibleChanged: {
            if (visible && status === Loader.Null)
                sourceComponent = title_dialog_inner
            else if (visible && item)
                Qt.callLater(item.begin)
            // A renamed row is made anew, and takes no focus back. Left in the dialog, the focus would bring no keyboard
            // at the next title.
            else if (item?.activeFocus)
                wrapper.list?.forceActiveFocus()
        }
    }

    Component {
        id: title_dialog_inner

        DialogContainer {
            function begin() {
                input.forceActiveFocus()
                input.text = title_dialog.isAdd ? qsTr("@New_playlist") : qsTr(title_dialog.title)
                input.selectAll()
            }

            state: "VerticalTop"
            title: title_dialog.isAdd ? qsTr("@New_playlist") : qsTr("@Rename")
            verticalOffset: Global.dp(120 * 0.53)
            onClose: {
                title_dialog.close()
                PlaylistModel.activeId = -1
            }

            Item {
                height: input_frame.height + 2 * Global.pixelsFromDesign(56)
                width: parent.width

                Rectangle {
                    id: input_frame

                    anchors {
                        left: parent.left
                        right: parent.right
                        margins: GlobalValues.dialogSidePadding
                        verticalCenter: parent.verticalCenter
                    }
                    border.color: "black"
                    border.width: input.activeFocus ? GlobalValues.inputElementActiveBorder
                                                    : GlobalValues.inputElementBorder
                    height: GlobalValues.defaultTextButtonHeight

                    AdvancedTextInput {
                        id: input

                        anchors {
                            fill: parent
                            margins: GlobalValues.inputElementActiveBorder
                        }
                        clip: true
                        styledFont: FontStyles.BodyL
                        Accessible.name: title_dialog.isAdd ? qsTr("@New_playlist") : qsTr("@Rename")
                        onAccepted: title_dialog.apply(text)
                    }
                }
            }

            DialogFooter {
                applyTitle: title_dialog.isAdd ? qsTr("@Continue") : qsTr("@OK")
                isUppercase: true
                onApply: title_dialog.apply(input.text)
                onCancel: title_dialog.close()
            }
        }
    }
}
