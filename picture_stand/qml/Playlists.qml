// All playlists, each with its first pictures, their number and a play button.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0
import "explorer"

Item {
    id: wrapper

    signal changeView(string view)

    function openPlaylist(id) {
        PlaylistModel.activeId = id
        PlaylistModel.mode = PlaylistDataRoles.ViewMode
        FolderModel.mode = FolderModelModeRoles.NormalMode
        FolderModel.clearListIgnoreSelection()
        FolderModel.loadFromList(PlaylistModel.getImagesById(PlaylistModel.activeId))
        changeView("playlist")
    }

    /// Of the row whose menu is open.
    function addPhotos() {
        PlaylistModel.mode = PlaylistDataRoles.AddMode
        FolderModel.mode = FolderModelModeRoles.SelectionMode
        FolderModel.setListIgnoreSelection(PlaylistModel.getImagesById(PlaylistModel.activeId))
        FolderModel.restore()
        changeView("select_photos")
    }

    /// Without a question: no file goes with a playlist.
    function deletePlaylist() {
        PlaylistModel.deleteItem(PlaylistModel.activeId)
        PlaylistModel.activeId = -1
    }

    function focusGrid() {
        if (visible)
            grid.forceActiveFocus()
    }

    onVisibleChanged: focusGrid()
    Component.onCompleted: focusGrid()

    Rectangle {
        anchors.fill: parent
        color: GlobalValues.defaultBackgroundColor
    }

    LRControls2.AppHeader {
        id: header

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.defaultAppHeaderHeight
        title: qsTr("@picture_stand")
        closeIcon: "image://resource/home"
        closePressedIcon: "image://resource/home_inv"
        rightButtonsOffset: Global.dp(20 * 0.53)
        onClose: App.quit()

        BitmapButton {
            icon: "image://resource/desktop_app_settings"
            pressedIcon: "image://resource/desktop_app_settings_f"
            Accessible.name: qsTr("@SlideshowSettings")
            onAction: {
                App.backView = "playlists"
                App.changeView("settings_slideshow")
            }
        }
    }

    ListModel {
        id: playlistMenu

        ListElement {
            uid_: 0
            text_: qsTr("@Rename")
            image_: "edit_word"
        }
        ListElement {
            uid_: 1
            text_: qsTr("@AddPhotosToPlaylist")
            image_: "plus_add"
        }
        ListElement {
            uid_: 2
            text_: qsTr("@Delete")
            image_: "trash"
        }
    }

    GridView {
        id: grid

        activeFocusOnTab: true
        anchors {
            top: header.bottom
            bottom: parent.bottom
            bottomMargin: Global.dp(20 * 0.5333)
            left: parent.left
            leftMargin: Global.dp(48 * 0.5333)
            right: parent.right
            rightMargin: Global.dp(48 * 0.5333)
        }
        cellWidth: width
        cellHeight: Global.dp(268 * 0.5333)
        clip: true
        keyNavigationEnabled: true
        model: PlaylistModel
        pressDelay: GlobalValues.listPressDelay
        visible: PlaylistModel.count > 0

        Keys.onPressed: event => explorer_footer.pressed(event)

        onMovementStarted: {
            const corner = grid.mapToGlobal(0, 0)
            DeviceInfoProvider.enterA2onFlick(corner.x, corner.y, DeviceInfoProvider.screenWidth, grid.height)
        }

        // The last row can scroll clear of the button at the foot.
        footer: Rectangle {
            width: grid.width // qmllint disable unqualified
            height: GlobalValues.scrollListButtonsHeight
        }

        delegate: Item {
            id: row

            required property int index
            required property string title
            required property int count_exists
            required property var playlist_id // 64 bits

            width: grid.cellWidth // qmllint disable unqualified
            height: grid.cellHeight // qmllint disable unqualified

            /// Also from the play button, which would keep the keys while the list moves on.
            function goTo(row) {
                grid.currentIndex = row
                grid.currentItem.forceActiveFocus()
            }

            function openMenu() {
                grid.currentIndex = index
                const corner = mapToGlobal(0, 0)
                Global.openContextMenuLoader(context_menu, playlistMenu, "ImageTextButton", "",
                                             Qt.rect(corner.x, corner.y, width, height))
            }

            Keys.onDownPressed: index + 1 < grid.count ? goTo(index + 1) : explorer_footer.takeFocus()
            Keys.onEnterPressed: wrapper.openPlaylist(playlist_id)
            Keys.onMenuPressed: openMenu()
            Keys.onReturnPressed: wrapper.openPlaylist(playlist_id)
            Keys.onRightPressed: play_button.forceActiveFocus()
            Keys.onUpPressed: event => {
                event.accepted = index > 0
                if (event.accepted)
                    goTo(index - 1)
            }

            Item {
                id: covers

                readonly property int cell: Global.dp(109 * 0.5333)
                readonly property int corner: Global.dp(10 * 0.5333)

                anchors {
                    left: parent.left
                    leftMargin: Global.dp(12 * 0.5333)
                    verticalCenter: parent.verticalCenter
                }
                height: width
                width: Global.dp(220 * 0.5333)

                Repeater {
                    model: 4

                    RoundedImage {
                        required property int index

                        height: covers.cell
                        width: covers.cell
                        x: index % 2 === 0 ? 0 : covers.width - width
                        y: index < 2 ? 0 : covers.height - height
                        radius_top_left: index === 0 ? covers.corner : 0
                        radius_top_right: index === 1 ? covers.corner : 0
                        radius_bottom_left: index === 2 ? covers.corner : 0
                        radius_bottom_right: index === 3 ? covers.corner : 0
                        source: "image://cover_provider/"
                            + PlaylistModel.getImage(row.playlist_id, index).replace(/%/g, "%25")
                    }
                }
            }

            Column {
                id: texts

                anchors {
                    left: covers.right
                    leftMargin: Global.dp(30 * 0.5333)
                    right: column_separator.left
                    rightMargin: Global.dp(24 * 0.5333)
                    verticalCenter: parent.verticalCenter
                }

                Accessible.role: Accessible.Button
                Accessible.name: qsTr(row.title) + ". " + row.count_exists // a title may hold "%2"
                Accessible.onPressAction: wrapper.openPlaylist(row.playlist_id)

                StyledText {
                    width: parent.width
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    styledFont: FontStyles.BodyBold
                    text: qsTr(row.title)
                    Accessible.ignored: true
                }

                StyledText {
                    width: parent.width
                    styledFont: FontStyles.BodySBold
                    text: row.count_exists
                    Accessible.ignored: true
                }
            }

            DottedSeparator {
                id: column_separator

                anchors {
                    right: play_column.left
                    verticalCenter: parent.verticalCenter
                }
                height: row.height - Global.dp(48 * 0.53333)
                vertical: true
            }

            // Where the keys stand; the finger needs no such sign.
            Rectangle {
                anchors {
                    fill: click_area
                    topMargin: GlobalValues.defaultFocusedElementBorderThickness
                    bottomMargin: GlobalValues.defaultFocusedElementBorderThickness
                }
                border.color: "black"
                border.width: GlobalValues.defaultFocusedElementBorderThickness
                color: "transparent"
                radius: GlobalValues.listElementHoverFrameBorderRadius
                visible: row.activeFocus && !DeviceInfoProvider.isTouchDevice
            }

            Item {
                id: click_area

                anchors {
                    fill: parent
                    rightMargin: Global.dp(102 * 0.5333)
                }

                MouseAreaDelegate {
                    onClicked: wrapper.openPlaylist(row.playlist_id)
                    onPressAndHold: row.openMenu()
                }
            }

            Item {
                id: play_column

                anchors {
                    top: parent.top
                    bottom: parent.bottom
                    right: parent.right
                    rightMargin: Global.dp(8 * 0.5333)
                }
                width: Global.dp(94 * 0.5333)
                enabled: PlaylistModel.hasExistsImage(row.playlist_id)

                BitmapButton {
                    id: play_button

                    Keys.onLeftPressed: row.forceActiveFocus()

                    anchors.fill: parent
                    icon: "image://resource/audio_book_play"
                    disabledIcon: "image://resource/audio_book_play_disabled"
                    pressedIcon: "image://resource/audio_book_play_inv"
                    Accessible.name: qsTr("@StartPlayback")
                    // The playlist first: its own settings are then in force when the show starts.
                    onAction: {
                        PlaylistModel.activeId = row.playlist_id
                        explorer_footer.tryRunSlideShow()
                    }
                }
            }

            DottedSeparator {
                anchors {
                    bottom: parent.bottom
                    left: parent.left
                    right: parent.right
                }
            }
        }
    }

    Rectangle {
        anchors {
            top: header.bottom
            bottom: parent.bottom
            left: parent.left
            right: parent.right
            margins: Global.dp(115 * 0.53)
        }
        color: GlobalValues.defaultBackgroundColor
        visible: PlaylistModel.count === 0

        StyledText {
            anchors.fill: parent
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            styledFont: FontStyles.BodyL
            text: qsTr("@ThereAreNoPlaylistsYet")
            wrapMode: Text.WordWrap
        }
    }

    ExplorerFooter {
        id: explorer_footer

        anchors {
            top: grid.top
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        grid: grid
    }

    LoaderNoSleep {
        id: context_menu

        anchors.fill: parent
        parent: wrapper.Window.contentItem
        visible: false
        onVisibleChanged: {
            if (visible && status === Loader.Null)
                sourceComponent = context_menu_inner
            else if (!visible && status === Loader.Ready)
                wrapper.focusGrid()
        }
    }

    Component {
        id: context_menu_inner

        ContextMenu {
            onChoosed: uid => {
                const row = PlaylistModel.index(grid.currentIndex, 0)
                PlaylistModel.activeId = PlaylistModel.data(row, PlaylistDataRoles.IdRole)
                if (uid === 0)
                    explorer_footer.openEdit(PlaylistModel.data(row, PlaylistDataRoles.TitleRole))
                else if (uid === 1)
                    wrapper.addPhotos()
                else if (uid === 2)
                    wrapper.deletePlaylist()
                context_menu.visible = false
            }
            onClose: {
                context_menu.visible = false
                PlaylistModel.activeId = -1
            }
        }
    }
}
