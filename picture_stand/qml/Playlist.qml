// One playlist's pictures, as a grid or as a list.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    readonly property bool selecting: FolderModel.mode === FolderModelModeRoles.SelectionMode
    readonly property bool showsGrid: FolderModel.viewMode === FolderModelModeRoles.GridViewMode

    function addPhotos() {
        FolderModel.setListIgnoreSelection(PlaylistModel.getImagesById(PlaylistModel.activeId))
        FolderModel.restore()
        PlaylistModel.mode = PlaylistDataRoles.AddMode
        FolderModel.mode = FolderModelModeRoles.SelectionMode
        FolderModel.clearSelection()
        App.changeView("select_photos")
        // Nothing here has this name: a line in the log, and no effect. It has to be so.
        if (select_photos_loader.visible) // qmllint disable unqualified
            return
    }

    function back() {
        FolderModel.clearListIgnoreSelection()
        FolderModel.restore()
        PlaylistModel.mode = PlaylistDataRoles.AllViewMode
        PlaylistModel.activeId = -1
        App.changeView("playlists")
    }

    Component.onCompleted: {
        grid_content.visible = Qt.binding(() => wrapper.showsGrid && FolderModel.countFiles > 0)
        list_content.visible = Qt.binding(() => !wrapper.showsGrid && FolderModel.countFiles > 0)
    }

    Rectangle {
        anchors.fill: parent
        color: GlobalValues.defaultBackgroundColor
    }

    LRControls2.AppHeader {
        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.defaultAppHeaderHeight
        closeIcon: "image://resource/back"
        closePressedIcon: "image://resource/back_inv"
        rightButtonsOffset: Global.dp(20 * 0.53)
        title: qsTr(PlaylistModel.data(PlaylistModel.index(PlaylistModel.getIndexById(PlaylistModel.activeId), 0),
                                       PlaylistDataRoles.TitleRole) ?? "")
        visible: !wrapper.selecting
        onClose: wrapper.back()

        BitmapButton {
            icon: "image://resource/plus_add"
            pressedIcon: "image://resource/plus_add_inv"
            Accessible.name: qsTr("@AddPhotos")
            onAction: wrapper.addPhotos()
        }

        BitmapButton {
            icon: "image://resource/desktop_app_settings"
            pressedIcon: "image://resource/desktop_app_settings_f"
            Accessible.name: qsTr("@SlideshowSettings")
            onAction: {
                App.backView = "playlist"
                App.changeView("settings_slideshow")
            }
        }

        BitmapButton {
            icon: wrapper.showsGrid ? "image://resource/bookstore_change_view_to_thumbnails"
                                    : "image://resource/bookstore_change_view_to_list"
            pressedIcon: icon + "_inv"
            Accessible.name: wrapper.showsGrid ? qsTr("@ShowAsList") : qsTr("@ShowAsGrid")
            onAction: FolderModel.viewMode = wrapper.showsGrid ? FolderModelModeRoles.ListViewMode
                                                               : FolderModelModeRoles.GridViewMode
        }
    }

    GroupSelectionPanel {
        id: panel

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.defaultAppHeaderHeight
        items_count: FolderModel.countFiles
        select_all_title: qsTr("@All")
        selected_count: FolderModel.countSelected
        selected_label_text: qsTr("@SelectBooks")
        visible: wrapper.selecting
        onCancel: {
            FolderModel.clearSelection()
            FolderModel.mode = FolderModelModeRoles.NormalMode
        }
        onSelectAll: select => {
            if (select)
                FolderModel.selectAllFiles()
            else
                FolderModel.clearSelection()
        }
    }

    Rectangle {
        id: line

        anchors {
            top: panel.bottom
            left: parent.left
            right: parent.right
        }
        color: "black"
        height: 1
    }

    component Content: LoaderNoSleep {
        property Component view

        function passOn() {
            if (visible && status === Loader.Null)
                sourceComponent = view
            if (!item)
                return
            item.visible = visible
            if (visible)
                item.forceActiveFocus()
        }

        anchors {
            top: line.bottom
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        visible: false // until bound: neither is to be loaded for nothing
        onLoaded: passOn()
        onVisibleChanged: passOn()
    }

    Content {
        id: grid_content

        view: Component {
            ExplorerGridView {}
        }
    }

    Content {
        id: list_content

        view: Component {
            ExplorerListView {}
        }
    }

    Rectangle {
        anchors {
            top: line.bottom
            bottom: parent.bottom
            left: parent.left
            right: parent.right
            margins: Global.dp(115 * 0.53)
        }
        color: GlobalValues.defaultBackgroundColor
        visible: FolderModel.countFiles === 0

        StyledText {
            anchors.fill: parent
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            styledFont: FontStyles.BodyL
            text: qsTr("@ThereAreNoPicturesYet")
            wrapMode: Text.WordWrap
        }
    }

    // The views bring their own. Pictures whose files have all vanished can still be played: they may come back.
    ExplorerFooter {
        anchors {
            top: line.bottom
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        visible: FolderModel.countFiles === 0
    }
}
