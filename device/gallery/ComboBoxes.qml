// Combo boxes: plain, with border, with prefix, elided, asleep; one of them open in a variant of the page.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Column {
    id: boxes

    property string variant

    x: GlobalValues.defaultListViewSideMargin
    y: x
    spacing: Global.pixelsFromDesign(48)
    onVariantChanged: {
        if (variant === "ComboBoxOpen")
            bordered.open()
        else
            bordered.close()
    }

    ListModel {
        id: units

        ListElement { uid_: 0; text_: "Seconds" }
        ListElement { uid_: 1; text_: "Minutes" }
        ListElement { uid_: 2; text_: "Hours, or as long as the battery lasts" }
    }

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
        preffix_text: "Interval in"
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
