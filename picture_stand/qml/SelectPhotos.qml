// The picker: pictures from all storages, for a new playlist or for one that is there.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    /// A playlist that was made for this selection is thrown away again; any other is shown, also when the way led here
    /// past its screen.
    function cancel() {
        if (PlaylistModel.mode === PlaylistDataRoles.CreateMode) {
            PlaylistModel.deleteItem(PlaylistModel.activeId)
            PlaylistModel.activeId = -1
            FolderModel.clearSelection()
            PlaylistModel.mode = PlaylistDataRoles.AllViewMode
            App.changeView("playlists")
        } else {
            FolderModel.clearSelection()
            PlaylistModel.mode = PlaylistDataRoles.ViewMode
            FolderModel.mode = FolderModelModeRoles.NormalMode
            FolderModel.clearListIgnoreSelection()
            FolderModel.loadFromList(PlaylistModel.getImagesById(PlaylistModel.activeId))
            App.changeView("playlist")
        }
    }

    Rectangle {
        anchors.fill: parent
        color: GlobalValues.defaultBackgroundColor
    }

    GroupSelectionPanel {
        id: panel

        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        height: visible ? GlobalValues.defaultAppHeaderHeight : 0
        items_count: FolderModel.countFiles
        select_all_title: qsTr("@All")
        selected_count: FolderModel.countSelected
        selected_label_text: qsTr("@SelectBooks")
        use_disabled: true
        visible: FolderModel.mode === FolderModelModeRoles.SelectionMode
        onCancel: wrapper.cancel()
        onSelectAll: select => {
            if (select)
                FolderModel.selectAllFiles()
            else
                FolderModel.clearSelection()
        }
    }

    Rectangle {
        id: panel_line

        anchors {
            top: panel.bottom
            left: parent.left
            right: parent.right
        }
        color: "black"
        height: 1
    }

    LRControls2.Breadcrumbs {
        id: breadcrumbs

        anchors {
            top: panel_line.bottom
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.breadcrumbsHeight
        model: BreadcrumbsModel
        onClicked: index => BreadcrumbsModel.changeFolderByIndex(index)
    }

    Rectangle {
        id: breadcrumbs_line

        anchors {
            top: breadcrumbs.bottom
            left: parent.left
            right: parent.right
        }
        color: "black"
        height: 1
    }

    LoaderNoSleep {
        id: content

        function passOn() {
            if (!item)
                return
            item.visible = visible
            if (visible)
                item.forceActiveFocus()
        }

        anchors {
            top: breadcrumbs_line.bottom
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        sourceComponent: grid_view
        visible: wrapper.visible
        onLoaded: passOn()
        onVisibleChanged: passOn()
    }

    Component {
        id: grid_view

        ExplorerGridView {}
    }
}
