// The picture of the show, full screen, and what touching it does.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property string title
    property string backView
    property alias test_w: image.width

    signal changeView(string view)
    signal back()

    function leave() {
        if (PlaylistModel.mode === PlaylistDataRoles.ViewMode) {
            App.changeView("playlist")
        } else {
            PlaylistModel.activeId = -1
            App.changeView("playlists")
        }
    }

    Accessible.role: Accessible.NoRole
    Accessible.onIncreaseAction: SlideshowModel.nextImage()
    Accessible.onDecreaseAction: SlideshowModel.prevImage()

    Rectangle {
        anchors.fill: parent
        color: "black"
    }

    AutoReloadImage {
        id: image

        anchors.fill: parent
        source: "image://image_provider/" + SlideshowModel.current_image
        sourceSize: Qt.size(App.screenWidth, App.screenHeight)
        fillMode: SettingsModel.display_mode === 0 ? Image.PreserveAspectFit : Image.PreserveAspectCrop

        MouseArea {
            id: area

            property int pressed_x: 0
            property int pressed_y: 0
            property bool is_moved: false

            function tapped(x, y) {
                if (x <= App.screenWidth * 0.2 && y <= App.screenHeight * 0.2) {
                    SlideshowModel.stop()
                    wrapper.leave()
                } else if (x <= App.screenWidth * 0.25) {
                    SlideshowModel.prevImage()
                } else if (x >= App.screenWidth * 0.75) {
                    SlideshowModel.nextImage()
                }
            }

            function swiped(dx, dy) {
                if (Math.abs(dy) >= Math.abs(dx))
                    return
                if (dx > 0)
                    SlideshowModel.prevImage()
                else
                    SlideshowModel.nextImage()
            }

            anchors.fill: parent
            onPressed: mouse => {
                pressed_x = mouse.x
                pressed_y = mouse.y
                is_moved = false
            }
            onPositionChanged: mouse => {
                const dx = mouse.x - pressed_x
                const dy = mouse.y - pressed_y
                // A squared distance against the plain number, by intent: about 22 pixels at 300 dpi.
                if (!is_moved && dx * dx + dy * dy >= SlideshowModel.getTouchDragZone())
                    is_moved = true
            }
            onReleased: mouse => {
                if (is_moved)
                    swiped(mouse.x - pressed_x, mouse.y - pressed_y)
                else
                    tapped(mouse.x, mouse.y)
            }
        }
    }
}
