// What stands over a list and beside it.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.controls 2.0 as Controls2

Item {
    anchors.fill: parent

    Column {
        id: heads

        width: parent.width
        spacing: Global.pixelsFromDesign(32)

        GroupSelectionPanel {
            width: parent.width
            items_count: 24
            selected_count: 3
            selected_label_text: "selected"
            select_all_title: "All"
        }
        GroupSelectionPanel {
            width: parent.width
            items_count: 24
            selected_count: 24
            selected_label_text: "selected"
            select_all_title: "All"
        }
        Controls2.Breadcrumbs {
            width: parent.width
            model: ListModel {
                ListElement { name: "" }
                ListElement { name: "This device" }
                ListElement { name: "Photo" }
            }
        }
        Controls2.Breadcrumbs {
            width: parent.width
            model: ListModel {
                ListElement { name: "" }
                ListElement { name: "This device" }
                ListElement { name: "Photo" }
                ListElement { name: "Holidays by the sea" }
                ListElement { name: "A summer long ago" }
                ListElement { name: "The last evening" }
            }
        }
    }
    ScrollIndicator {
        anchors {
            top: heads.bottom
            bottom: parent.bottom
            right: parent.right
        }
        length: height
        indicatorLength: height * 0.3
        offset: height * 0.2
    }
}
