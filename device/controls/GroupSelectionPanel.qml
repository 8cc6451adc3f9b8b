// The header of a selection mode: back, how much is selected, and a box that takes all or nothing.
import QtQuick
import com.lindenreed.controls

Item {
    id: group_selection_panel

    property int items_count: 0
    property int selected_count: 0
    property string selected_label_text
    property string select_all_title
    property bool use_disabled: false ///< the box is asleep while there is nothing to take

    /// Of more than there are here some are elsewhere, perhaps all: the box is not to give them up.
    readonly property bool allSelected: items_count > 0 && selected_count === items_count

    signal cancel()
    signal selectAll(bool select)

    implicitHeight: GlobalValues.defaultAppHeaderHeight
    implicitWidth: parent ? parent.width : 0

    BitmapButton {
        id: cancel_button

        anchors.left: parent.left
        anchors.leftMargin: GlobalValues.defaultAppHeaderMargin
        height: group_selection_panel.height
        icon: "image://resource/back"
        pressedIcon: "image://resource/back_inv"
        Accessible.name: qsTr("@Cancel")
        KeyNavigation.right: select_all
        onAction: group_selection_panel.cancel()
    }

    StyledText {
        id: count_text

        anchors.left: cancel_button.right
        anchors.verticalCenter: parent.verticalCenter
        styledFont: FontStyles.Heading3
        // A selection may reach over several folders, of which this one has fewer.
        text: group_selection_panel.selected_count > group_selection_panel.items_count
            ? group_selection_panel.selected_count
            : group_selection_panel.selected_count + " / " + group_selection_panel.items_count
    }

    StyledText {
        anchors.baseline: count_text.baseline
        anchors.left: count_text.right
        anchors.leftMargin: Global.pixelsFromDesign(24)
        anchors.right: select_all.left
        elide: Text.ElideRight
        maximumLineCount: 1
        styledFont: FontStyles.BodyS
        text: group_selection_panel.selected_label_text
    }

    PressTarget {
        id: select_all

        readonly property int padding: Global.pixelsFromDesign(24)

        anchors.right: parent.right
        anchors.rightMargin: GlobalValues.defaultListViewSideMargin - padding
        enabled: !group_selection_panel.use_disabled || group_selection_panel.items_count > 0
        focusElement.anchors.bottomMargin: Global.pixelsFromDesign(4) // clear of the line
        focusElement.anchors.topMargin: Global.pixelsFromDesign(4)
        // The line below is not the target's.
        height: group_selection_panel.height - GlobalValues.defaultSolidSeparatorThickness
        width: all_title.width + box.width + 3 * padding
        KeyNavigation.left: cancel_button
        onAction: group_selection_panel.selectAll(!group_selection_panel.allSelected)

        Accessible.checkable: true
        Accessible.checked: group_selection_panel.allSelected
        Accessible.name: group_selection_panel.select_all_title
        Accessible.role: Accessible.CheckBox
        Accessible.onToggleAction: activate()

        StyledText {
            id: all_title

            anchors.verticalCenter: parent.verticalCenter
            color: select_all.ink
            font.bold: group_selection_panel.allSelected
            styledFont: FontStyles.BodyL
            text: group_selection_panel.select_all_title
            width: Math.ceil(implicitWidth)
            x: select_all.padding
            Accessible.ignored: true
        }

        Rectangle {
            id: box

            border.color: select_all.ink
            border.width: Global.pixelsFromDesign(4)
            color: "transparent"
            height: width
            radius: Global.pixelsFromDesign(8)
            width: Global.pixelsFromDesign(56)
            x: select_all.width - select_all.padding - width
            y: Math.round((select_all.height - height) / 2)

            Image {
                // An inverse has a ground of its own, wider than the box's inside.
                readonly property string sign: select_all.pressed ? "image://resource_inv/done" : "image://resource/done"

                anchors.centerIn: parent
                source: sign
                sourceSize.width: Global.pixelsFromDesign(48)
                visible: group_selection_panel.allSelected
                Accessible.ignored: true
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        color: GlobalValues.defaultBorderColor
        height: GlobalValues.defaultSolidSeparatorThickness
    }
}
