// The window: the current screen, and over it short messages.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

Window {
    id: main_window

    function globalChangeView(view) {
        if (view === "slideshow") {
            App.showPanel(false)
            SlideshowModel.switchHQUpdates(true)
            main_loader.sourceComponent = slideshow
            SlideshowModel.start()
        } else if (view === "settings_slideshow") {
            App.showPanel(true)
            SlideshowModel.switchHQUpdates(false)
            main_loader.sourceComponent = settings_slideshow
        } else if (view === "settings_created_datetime") {
            App.showPanel(true)
            SlideshowModel.switchHQUpdates(false)
            main_loader.sourceComponent = settings_created_datetime
        } else if (view === "settings_current_datetime") {
            App.showPanel(true)
            SlideshowModel.switchHQUpdates(false)
            main_loader.sourceComponent = settings_current_datetime
        } else if (view === "settings_customize_created_date") {
            App.showPanel(false)
            SlideshowModel.switchHQUpdates(false)
            App.updateScreen()
            main_loader.sourceComponent = settings_customize_created_date
            DeviceInfoProvider.requireFullUpdateHQ()
        } else if (view === "settings_customize_current_date") {
            App.showPanel(false)
            SlideshowModel.switchHQUpdates(false)
            App.updateScreen()
            main_loader.sourceComponent = settings_customize_current_date
            DeviceInfoProvider.requireFullUpdateHQ()
        } else if (view === "playlists") {
            App.showPanel(true)
            SlideshowModel.switchHQUpdates(false)
            App.updateScreen()
            main_loader.sourceComponent = playlists
        } else if (view === "playlist") {
            App.showPanel(true)
            SlideshowModel.switchHQUpdates(false)
            App.updateScreen()
            main_loader.sourceComponent = playlist
        } else if (view === "select_photos") {
            App.showPanel(true)
            SlideshowModel.switchHQUpdates(false)
            App.updateScreen()
            main_loader.sourceComponent = select_photos
        }
    }

    width: App.screenWidth
    height: App.screenHeight
    visible: true
    title: qsTr("Scroll")

    // Connected like this, and not by a handler, which would be called before everything that is connected in native
    // code: the settings must have handed the light over first.
    Component.onCompleted: App.changedView.connect(main_window.globalChangeView)
    Component.onDestruction: App.changedView.disconnect(main_window.globalChangeView)

    LoaderNoSleep {
        id: main_loader

        anchors {
            top: parent.top
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        sourceComponent: playlists
    }

    // Outside the loader of the screens, so that a message outlives a change of view.
    LoaderNoSleep {
        id: info_message

        anchors.fill: parent
        visible: false
        onVisibleChanged: {
            if (visible && status === Loader.Null)
                sourceComponent = info_message_inner
        }
    }

    Connections {
        target: App

        function onShowInfoMessage(message, icon) {
            Global.openInfoMessageLoader(info_message, message, icon, 4000)
        }
    }

    Connections {
        target: info_message.item

        function onClose() {
            Global.closeInfoMessageLoader(info_message)
        }
    }

    Component {
        id: info_message_inner

        InfoMessage {}
    }

    Component {
        id: settings_customize_created_date

        SettingsCustomizeCreatedDate {
            onBack: App.changeView("settings_created_datetime")
        }
    }

    Component {
        id: settings_customize_current_date

        SettingsCustomizeCurrentDate {
            onBack: App.changeView("settings_current_datetime")
        }
    }

    Component {
        id: settings_slideshow

        SettingsSlideshow {
            onChangeView: view => App.changeView(view)
            onBack: App.changeView(App.backView)
        }
    }

    Component {
        id: settings_created_datetime

        SettingsCreatedDateTime {
            title: qsTr("@PhotoCreatedDate")
            onBack: App.changeView("settings_slideshow")
            onCustomize: App.changeView("settings_customize_created_date")
        }
    }

    Component {
        id: settings_current_datetime

        SettingsCurrentDateTime {
            title: qsTr("@CurrentDateTime")
            onBack: App.changeView("settings_slideshow")
            onCustomize: App.changeView("settings_customize_current_date")
        }
    }

    Component {
        id: slideshow

        SlideShow {
            onChangeView: view => App.changeView(view)
        }
    }

    Component {
        id: playlists

        Playlists {
            onChangeView: view => App.changeView(view)
        }
    }

    Component {
        id: select_photos

        SelectPhotos {}
    }

    Component {
        id: playlist

        Playlist {}
    }
}
