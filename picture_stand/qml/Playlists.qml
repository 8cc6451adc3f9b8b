// All playlists, each with its number of pictures and a play button.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as LRControls2
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0
import "explorer"

Item {
    id: wrapper

    signal changeView(string view)

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
        onClose: App.quit()
    }

    GridView {
        id: grid

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

            Column {
                id: texts

                anchors {
                    left: parent.left
                    leftMargin: Global.dp(12 * 0.5333)
                    right: column_separator.left
                    rightMargin: Global.dp(24 * 0.5333)
                    verticalCenter: parent.verticalCenter
                }

                Accessible.role: Accessible.StaticText
                Accessible.name: qsTr(row.title) + ". " + row.count_exists // a title may hold "%2"

                StyledText {
                    width: parent.width
                    elide: Text.ElideRight
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
}
