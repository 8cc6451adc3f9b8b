// Combo boxes: plain, with border, with prefix, elided, asleep, at the foot; one of them open in each variant of the page.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: boxes

    property string variant

    anchors.fill: parent
    onVariantChanged: {
        bordered.close()
        lowest.close()
        if (variant === "ComboBoxOpen")
            bordered.open()
        else if (variant === "ComboBoxAbove")
            lowest.open()
    }

    ListModel {
        id: units

        ListElement { uid_: 0; text_: "Seconds" }
        ListElement { uid_: 1; text_: "Minutes" }
        ListElement { uid_: 2; text_: "Hours, or as long as the battery lasts" }
    }
    ListModel {
        id: years

        Component.onCompleted: {
            for (let year = 2010; year < 2022; ++year)
                append({ uid_: year, text_: "Summer of " + year })
        }
    }

    Column {
        x: GlobalValues.defaultListViewSideMargin
        y: Math.min(x, Global.pixelsFromDesign(48))
        spacing: Global.pixelsFromDesign(24)

        ComboBox {
            menuItems: units
            selectedUid: 0
        }
        ComboBox {
            id: bordered

            menuItems: units
            selectedUid: 1
            show_border: true
            state: "RadioTextButton"
        }
        ComboBox {
            menuItems: units
            selectedUid: 1
            preffix_text: "Interval in: "
        }
        ComboBox {
            menuItems: units
            selectedUid: 2
            max_width: Global.pixelsFromDesign(400)
            show_border: true
        }
        ComboBox {
            menuItems: units
            selectedUid: 0
            show_border: true
            enabled: false
        }
    }
    ComboBox {
        id: lowest

        anchors {
            bottom: parent.bottom
            right: parent.right
            margins: GlobalValues.defaultListViewSideMargin
        }
        menuItems: years
        selectedUid: 2019
        show_border: true
    }
}
