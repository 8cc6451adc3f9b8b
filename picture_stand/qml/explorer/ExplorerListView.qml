// Pictures one to a row, with name and kind, under the scroll aids and the big button.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property int sideMargin: Global.dp(48 * 0.5333)
    property int gridMargin: Global.dp(24 * 0.5333)

    onActiveFocusChanged: {
        if (activeFocus)
            grid.forceActiveFocus()
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

    GridView {
        id: grid

        anchors {
            fill: parent
            leftMargin: wrapper.sideMargin
            rightMargin: wrapper.sideMargin
            bottomMargin: wrapper.gridMargin
        }
        activeFocusOnTab: true
        cellHeight: Global.dp(268 * 0.5333)
        cellWidth: width
        clip: true
        keyNavigationEnabled: true
        model: FolderModel
        pressDelay: GlobalValues.listPressDelay

        Keys.onPressed: event => footer.pressed(event)

        onMovementStarted: {
            const corner = grid.mapToGlobal(0, 0)
            DeviceInfoProvider.enterA2onFlick(corner.x, corner.y, DeviceInfoProvider.screenWidth, grid.height)
        }

        // The last row can scroll clear of the button at the foot.
        footer: Rectangle {
            height: GlobalValues.scrollListButtonsHeight
            width: grid.width
        }

        delegate: Item {
            id: row

            function activate() {
                if (FolderModel.mode === FolderModelModeRoles.SelectionMode)
                    FolderModel.selectFile(path, !selected)
                else
                    PlaylistModel.openImage(path)
            }

            function openMenu() {
                if (FolderModel.mode === FolderModelModeRoles.SelectionMode)
                    return
                const corner = image.mapToGlobal(0, 0)
                Global.openContextMenuLoader(context_menu, imageMenu, "ImageTextButton", "",
                                             Qt.rect(corner.x, corner.y, image.width, image.height))
                context_menu.item.forceActiveFocus()
            }

            height: grid.cellHeight
            width: grid.cellWidth

            Keys.onEnterPressed: activate()
            Keys.onMenuPressed: openMenu()
            Keys.onReturnPressed: activate()

            Accessible.name: name
            Accessible.role: Accessible.ListItem
            Accessible.onPressAction: activate()

            Item {
                id: content

                anchors {
                    fill: parent
                    topMargin: Global.dp(24 * 0.53)
                    bottomMargin: Global.dp(24 * 0.53)
                }

                Rectangle {
                    id: frame

                    anchors {
                        left: parent.left
                        verticalCenter: parent.verticalCenter
                    }
                    border.color: "black"
                    border.width: Global.dp(1 * 0.53)
                    height: width
                    width: Global.dp(221 * 0.53)

                    AutoReloadImage {
                        id: image

                        anchors {
                            fill: parent
                            margins: frame.border.width
                        }
                        cache: false
                        fillMode: Image.PreserveAspectCrop
                        source: "image://cover_provider/" + path.replace(/%/g, "%25")
                        sourceSize: Qt.size(width, height)
                        Accessible.ignored: true
                    }

                    ExplorerLoadingImage {
                        anchors.fill: image
                        // What cannot be decoded comes as a picture without a size, and is Ready as well.
                        visible: image.status !== Image.Ready || image.implicitWidth === 0
                    }

                    CheckBoxTransparent {
                        anchors.fill: image
                        isSelected: selected
                        visible: FolderModel.mode === FolderModelModeRoles.SelectionMode
                    }
                }

                StyledText {
                    id: name_text

                    anchors {
                        top: parent.top
                        left: frame.right
                        leftMargin: Global.dp(10 * 0.53)
                    }
                    elide: Text.ElideRight
                    lineHeight: GlobalValues.fontLargeBodyLineHeight
                    lineHeightMode: Text.FixedHeight
                    maximumLineCount: 1 // a name may hold line breaks
                    styledFont: FontStyles.BodyLBold
                    text: name
                    width: grid.cellWidth - frame.width - 2 * Global.dp(10 * 0.533)
                    Accessible.ignored: true
                }

                // All behind the first dot, so it may be as long as a name.
                StyledText {
                    anchors {
                        bottom: parent.bottom
                        left: name_text.left
                        right: name_text.right
                    }
                    elide: Text.ElideRight
                    font.capitalization: Font.AllUppercase
                    maximumLineCount: 1
                    styledFont: FontStyles.BodyS
                    text: FolderModel.getExtension(path)
                    Accessible.ignored: true
                }
            }

            // Where the keys stand; the finger needs no such sign.
            Rectangle {
                anchors.fill: parent
                border.color: "black"
                border.width: GlobalValues.defaultFocusedElementBorderThickness
                color: "transparent"
                radius: GlobalValues.listElementHoverFrameBorderRadius
                visible: !DeviceInfoProvider.isTouchDevice && grid.currentIndex === index
            }

            DottedSeparator {
                anchors {
                    bottom: parent.bottom
                    left: parent.left
                    right: parent.right
                }
            }

            MouseAreaDelegate {
                onClicked: row.activate()
                onPressAndHold: row.openMenu()
            }

            LoaderNoSleep {
                id: context_menu

                anchors.fill: parent
                parent: row.Window.contentItem
                visible: false
                onVisibleChanged: {
                    if (visible && status === Loader.Null)
                        sourceComponent = context_menu_inner
                    else if (!visible && status === Loader.Ready)
                        row.forceActiveFocus()
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
                        // Before the list is read again, which takes this row away and its menu with it.
                        context_menu.visible = false
                        if (uid === 1)
                            FolderModel.loadFromList(PlaylistModel.getImagesById(PlaylistModel.activeId))
                    }
                    onClose: context_menu.visible = false
                }
            }
        }
    }

    ExplorerFooter {
        id: footer

        anchors.fill: parent
        grid: grid
    }
}
