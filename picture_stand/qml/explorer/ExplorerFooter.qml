// The layer over the foot of a list: starts the show of the active playlist.
import QtQuick 2.12
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property QtObject grid ///< the list it serves

    function tryRunSlideShow() {
        runSlideshow()
    }

    // The stored count decides; the show itself drops pictures whose file has vanished.
    function runSlideshow() {
        const row = PlaylistModel.index(PlaylistModel.getIndexById(PlaylistModel.activeId), 0)
        if (!(PlaylistModel.data(row, PlaylistDataRoles.CountRole) > 0))
            return
        SlideshowModel.initFromList(PlaylistModel.getImagesById(PlaylistModel.activeId),
                                    SettingsModel.change_picture_time)
        SlideshowModel.shuffleChange(SettingsModel.shuffle)
        SlideshowModel.start()
        App.changeView("slideshow")
    }
}
