// The picture of the show, full screen, what lies over it, and what touching it does.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property bool menu_opened: false
    property bool frontlight_opened: false
    property string title
    property string backView
    property alias test_w: image.width

    signal changeView(string view)
    signal back()

    /// To where the show was started.
    function leave() {
        if (PlaylistModel.mode === PlaylistDataRoles.ViewMode) {
            App.changeView("playlist")
        } else {
            PlaylistModel.activeId = -1
            App.changeView("playlists")
        }
    }

    /// On a device without touch: what closes lets go of the keys, which go to what is seen then.
    function focusWhatIsLeft() {
        if (menu_opened)
            return
        if (frontlight_opened)
            settings_frontlight.focusFirst()
        else
            wrapper.forceActiveFocus()
    }

    // The menu comes and goes with this; that it is not there at first is no change.
    onMenu_openedChanged: {
        SlideshowModel.switchHQUpdates(!menu_opened)
        focusWhatIsLeft()
    }
    onFrontlight_openedChanged: focusWhatIsLeft()

    Accessible.role: Accessible.NoRole
    Accessible.onPressAction: {
        menu_opened = true
        SlideshowModel.stop()
    }
    Accessible.onIncreaseAction: SlideshowModel.nextImage()
    Accessible.onDecreaseAction: SlideshowModel.prevImage()

    Connections {
        target: SlideshowModel

        function onOpenCloseMenu() {
            if (wrapper.menu_opened) {
                wrapper.menu_opened = false
                SlideshowModel.start()
            } else {
                SlideshowModel.stop()
                wrapper.menu_opened = true
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
    }

    AutoReloadImage {
        id: image

        anchors.fill: parent
        // What looks like an escape in a name is none.
        source: "image://image_provider/" + SlideshowModel.current_image.replace(/%/g, "%25")
        sourceSize: Qt.size(App.screenWidth, App.screenHeight)
        fillMode: SettingsModel.display_mode === 0 ? Image.PreserveAspectFit : Image.PreserveAspectCrop

        MouseArea {
            id: area

            property int pressed_x: 0
            property int pressed_y: 0
            property bool is_moved: false

            function tapped(x, y) {
                if (x <= App.screenWidth * 0.2 && y <= App.screenHeight * 0.2) {
                    wrapper.menu_opened = false
                    SlideshowModel.stop()
                    wrapper.leave()
                } else if (wrapper.frontlight_opened) {
                    wrapper.frontlight_opened = false
                    // Only the middle goes on with the show; a tap at the side leaves it paused, by intent.
                    if (x > App.screenWidth * 0.25 && x < App.screenWidth * 0.75)
                        SlideshowModel.start()
                } else if (x <= App.screenWidth * 0.25) {
                    SlideshowModel.prevImage()
                } else if (x >= App.screenWidth * 0.75) {
                    SlideshowModel.nextImage()
                } else {
                    wrapper.menu_opened = true
                    SlideshowModel.stop()
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

        RectangleCreatedDate {
            id: created_date_rect

            // Above it in a shared corner stands the clock.
            readonly property bool together: current_date_rect.visible && current_date_rect.state === state

            anchors.margins: Global.dp(48 * 0.53)
            anchors.topMargin: together ? Global.dp(24 * 0.53) : Global.dp(48 * 0.53)
            width: Math.max(potential_width, current_date_rect.potential_width)
            bold: SettingsModel.created_date_font_is_bold
            datetime: SlideshowModel.created_datetime
            font_family: FontModel.getFontFamilyByName(SettingsModel.created_date_font)
            italic: SettingsModel.created_date_font_is_italic
            position_uid: SettingsModel.created_date_position
            visible: SettingsModel.created_date_show

            states: [
                State {
                    name: "top_left"

                    AnchorChanges {
                        target: created_date_rect
                        anchors.top: created_date_rect.together ? current_date_rect.bottom : image.top
                        anchors.left: image.left
                    }
                },
                State {
                    name: "top_right"

                    AnchorChanges {
                        target: created_date_rect
                        anchors.top: created_date_rect.together ? current_date_rect.bottom : image.top
                        anchors.right: image.right
                    }
                },
                State {
                    name: "bottom_left"

                    AnchorChanges {
                        target: created_date_rect
                        anchors.bottom: image.bottom
                        anchors.left: image.left
                    }
                },
                State {
                    name: "bottom_right"

                    AnchorChanges {
                        target: created_date_rect
                        anchors.bottom: image.bottom
                        anchors.right: image.right
                    }
                }
            ]
        }

        RectangleCurrentDate {
            id: current_date_rect

            readonly property bool together: created_date_rect.visible && created_date_rect.state === state

            anchors.margins: Global.dp(48 * 0.53)
            anchors.bottomMargin: together ? Global.dp(24 * 0.53) : Global.dp(48 * 0.53)
            width: created_date_rect.width
            bold: SettingsModel.current_date_font_is_bold
            font_family: FontModel.getFontFamilyByName(SettingsModel.current_date_font)
            italic: SettingsModel.current_date_font_is_italic
            position_uid: SettingsModel.current_date_position
            visible: SettingsModel.current_date_show

            states: [
                State {
                    name: "top_left"

                    AnchorChanges {
                        target: current_date_rect
                        anchors.top: image.top
                        anchors.left: image.left
                    }
                },
                State {
                    name: "top_right"

                    AnchorChanges {
                        target: current_date_rect
                        anchors.top: image.top
                        anchors.right: image.right
                    }
                },
                State {
                    name: "bottom_left"

                    AnchorChanges {
                        target: current_date_rect
                        anchors.bottom: current_date_rect.together ? created_date_rect.top : image.bottom
                        anchors.left: image.left
                    }
                },
                State {
                    name: "bottom_right"

                    AnchorChanges {
                        target: current_date_rect
                        anchors.bottom: current_date_rect.together ? created_date_rect.top : image.bottom
                        anchors.right: image.right
                    }
                }
            ]
        }

        Rectangle {
            anchors.fill: parent
            color: "black"
            opacity: 0.7
            visible: wrapper.menu_opened
        }

        SlideshowMenu {
            anchors.fill: parent
            visible: wrapper.menu_opened

            onChoosed: view => {
                if (view === "frontlight") {
                    wrapper.frontlight_opened = true
                    wrapper.menu_opened = false
                } else if (view === "settings_slideshow") {
                    App.backView = "slideshow"
                    wrapper.changeView(view)
                } else if (view === "stop_slideshow") {
                    wrapper.menu_opened = false
                    wrapper.leave()
                }
            }
            onClose: {
                wrapper.menu_opened = false
                SlideshowModel.start()
            }
        }
    }

    SettingsFrontlight {
        id: settings_frontlight

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        visible: wrapper.frontlight_opened

        // What the middle of the picture is where there is touch.
        Keys.onBackPressed: {
            wrapper.frontlight_opened = false
            SlideshowModel.start()
        }
    }
}
