// The USB storage of the grid of storages. Its icon has no room for its capacity.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

GridInternalDelegate {
    icon: "image://resource/e3_detail_otg"
    iconText: ""

    Accessible.name: name
}
