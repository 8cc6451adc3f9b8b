// Folders, storages and pictures as square cells, three to a row, under the scroll aids and the big button. The
// delegates read the model's roles, the cell's properties and gridMargin from here, by name.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property int countImagesInRow: 3
    property int cellSize
    property int sideMargin: Global.dp(48 * 0.5333)
    property int gridMargin: Global.dp(20 * 0.5333)

    function updateCellSize() {
        cellSize = Math.floor(grid.width / countImagesInRow)
    }

    onActiveFocusChanged: {
        if (activeFocus)
            grid.forceActiveFocus()
    }

    Component.onCompleted: {
        updateCellSize()
        grid.visible = true
    }

    ListModel {
        id: imageMenu

        ListElement {
            uid_: 0
            text_: qsTr("@SelectMultiple")
            image_: "checkbox_on"
        }
        ListElement {
            uid_: 1
            text_: qsTr("@Delete")
            image_: "trash"
        }
    }

    ListModel {
        id: imageMenuSelect

        ListElement {
            uid_: 0
            text_: qsTr("@SelectMultiple")
            image_: "checkbox_on"
        }
    }

    GridView {
        id: grid

        activeFocusOnTab: true
        anchors {
            fill: parent
            leftMargin: wrapper.sideMargin - wrapper.gridMargin
            rightMargin: wrapper.sideMargin - wrapper.gridMargin
            bottomMargin: wrapper.gridMargin
        }
        cacheBuffer: Math.max(0, wrapper.cellSize * 4)
        cellHeight: wrapper.cellSize
        cellWidth: wrapper.cellSize
        clip: true
        keyNavigationEnabled: true
        model: FolderModel
        pressDelay: GlobalValues.listPressDelay
        visible: false // until the cells have their size

        Keys.onPressed: event => footer.pressed(event)

        onMovementStarted: {
            const corner = grid.mapToGlobal(0, 0)
            DeviceInfoProvider.enterA2onFlick(corner.x, corner.y, DeviceInfoProvider.screenWidth, grid.height)
        }
        onVisibleChanged: {
            if (visible)
                wrapper.updateCellSize()
        }
        onWidthChanged: {
            if (visible)
                wrapper.updateCellSize()
        }

        // The last row can scroll clear of the button at the foot.
        footer: Rectangle {
            height: GlobalValues.scrollListButtonsHeight
            width: grid.width
        }

        delegate: Item {
            id: cell

            readonly property bool isFirstInRow: index % countImagesInRow == 0
            readonly property bool isLastInRow: (index + 1) % countImagesInRow == 0
            readonly property int currentIndex: grid.currentIndex
            property int gridMargid // read by nobody

            /// The delegate on show.
            function shown() {
                return Array.from(children).find(child => child.visible)
            }

            height: grid.cellHeight
            width: grid.cellWidth

            // What a tap does, and what a finger that stays does; nothing in a blank cell.
            Keys.onEnterPressed: shown()?.activate?.()
            Keys.onMenuPressed: shown()?.openMenu?.()
            Keys.onReturnPressed: shown()?.activate?.()

            GridImageDelegate {
                visible: model.type === StorageItemDataRoles.StorageItemFile
            }
            GridFolderDelegate {
                visible: model.type === StorageItemDataRoles.StorageItemFolder
            }
            GridEmptyDelegate {
                visible: model.type === StorageItemDataRoles.StorageItemEmpty
            }
            GridInternalDelegate {
                visible: model.type === StorageItemDataRoles.StorageItemInternal
            }
            GridSDCardDelegate {
                visible: model.type === StorageItemDataRoles.StorageItemSDCard
            }
            GridOTGDelegate {
                visible: model.type === StorageItemDataRoles.StorageItemOTG
            }
        }
    }

    ExplorerFooter {
        id: footer

        anchors.fill: parent
        grid: grid
    }
}
