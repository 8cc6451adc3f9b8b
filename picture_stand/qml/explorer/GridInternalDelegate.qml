// The internal memory of the grid of storages.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picture_stand 1.0
import com.lindenreed.picturestand 1.0

GridFolderDelegate {
    icon: "image://resource/e3_detail_internal_memory"
    iconText: totalSpace
    nameLines: 1
    secondText: memory
    textMargin: Global.dp(12 * 0.5333)

    Accessible.name: name + ". " + memory + ". " + totalSpace
}
