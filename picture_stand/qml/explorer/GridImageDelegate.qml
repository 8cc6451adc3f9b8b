// A picture of the grid.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Rectangle {
    id: wrapper

    readonly property int selected_margin: Global.dp(12 * 0.5333)
    property bool sourceSet: false

    // Later, so that a page of cells stands before the first thumbnail is asked for.
    function setSource() {
        if (sourceSet)
            return
        sourceSet = true
        image.source = "image://cover_provider/" + path.replace(/%/g, "%25")
    }

    function activate() {
        if (greying.visible)
            return
        if (FolderModel.mode === FolderModelModeRoles.SelectionMode)
            toggle()
        else
            PlaylistModel.openImage(path)
    }

    /// Nothing where the check circle or the greying would take the finger.
    function openMenu() {
        if (greying.visible || FolderModel.mode === FolderModelModeRoles.SelectionMode)
            return
        const corner = image.mapToGlobal(0, 0)
        Global.openContextMenuLoader(
            context_menu, PlaylistModel.mode === PlaylistDataRoles.ViewMode ? imageMenu : imageMenuSelect,
            "ImageTextButton", "", Qt.rect(corner.x, corner.y, image.width, image.height))
        context_menu.item.forceActiveFocus()
    }

    function toggle() {
        FolderModel.selectFile(path, !selected)
    }

    anchors {
        fill: parent
        topMargin: gridMargin * 2 - selected_margin
        bottomMargin: gridMargin - selected_margin
        leftMargin: gridMargin
        rightMargin: gridMargin
    }
    border.color: "black"
    border.width: 1

    Accessible.checkable: FolderModel.mode === FolderModelModeRoles.SelectionMode
    Accessible.checked: selected
    Accessible.name: name
    Accessible.role: Accessible.Button
    Accessible.onPressAction: toggle() // in every mode

    Component.onCompleted: Qt.callLater(setSource)
    // A call that is still to come reaches a cell that has gone, and a picture without an engine would end the program.
    Component.onDestruction: sourceSet = true

    AutoReloadImage {
        id: image

        anchors {
            fill: parent
            margins: 1
        }
        asynchronous: true
        cache: false
        fillMode: Image.PreserveAspectCrop
        sourceSize: Qt.size(width, height)
        Accessible.ignored: true

        MouseAreaDelegate {
            onClicked: PlaylistModel.openImage(path)
            onPressAndHold: wrapper.openMenu()
        }

        ExplorerLoadingImage {
            anchors.fill: parent
            // What cannot be decoded comes as a picture without a size, and is Ready as well.
            visible: image.status !== Image.Ready || image.implicitWidth === 0
        }

        CheckBoxTransparent {
            anchors.fill: parent
            isSelected: selected
            visible: FolderModel.mode === FolderModelModeRoles.SelectionMode && !greying.visible

            MouseArea {
                anchors.fill: parent
                onClicked: wrapper.toggle()
            }
        }

        // What the playlist has already can be seen, and not picked again.
        Rectangle {
            id: greying

            anchors.fill: parent
            color: "white"
            opacity: 0.5
            visible: PlaylistModel.mode === PlaylistDataRoles.AddMode
                && PlaylistModel.hasImage(PlaylistModel.activeId, path)

            MouseArea {
                anchors.fill: parent
            }
        }
    }

    // As around the cells of folders; off the picture, which may be as dark as the frame.
    Rectangle {
        id: key_frame

        anchors {
            fill: parent
            margins: -2 * key_frame.border.width
        }
        border.color: "black"
        border.width: Global.dp(6 * 0.5333)
        color: "transparent"
        visible: !DeviceInfoProvider.isTouchDevice && currentIndex === index && grid.activeFocus
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
                wrapper.forceActiveFocus()
        }
    }

    Component {
        id: context_menu_inner

        ContextMenu {
            onChoosed: uid => {
                if (uid === 0)
                    FolderModel.mode = FolderModelModeRoles.SelectionMode
                else if (uid === 1)
                    PlaylistModel.deleteImage(PlaylistModel.activeId, path)
                // Before the list is read again, which takes this cell away and its menu with it.
                context_menu.visible = false
                if (uid === 1)
                    FolderModel.loadFromList(PlaylistModel.getImagesById(PlaylistModel.activeId))
            }
            onClose: context_menu.visible = false
        }
    }
}
