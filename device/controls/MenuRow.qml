// One row of a menu: a sign or an icon where the menu has such, and a text.
import QtQuick
import com.lindenreed.controls

Item {
    id: menu_row

    property string text
    property string icon ///< name of a theme picture; empty: none
    property bool hasRadioSign: false
    property bool checked: false
    property bool bold: false
    property bool current: false ///< the row that the keys are at
    property bool dotted: false ///< with a line along the lower edge

    readonly property int sidePadding: Global.pixelsFromDesign(32)
    readonly property color ground: touch.containsPress ? GlobalValues.defaultBorderColor
        : GlobalValues.defaultBackgroundColor
    readonly property color ink: touch.containsPress ? GlobalValues.defaultBackgroundColor
        : GlobalValues.defaultBorderColor

    signal chosen()

    z: touch.containsPress ? 1 : 0

    Accessible.checkable: hasRadioSign || checked
    Accessible.checked: checked
    Accessible.focusable: true
    Accessible.focused: current // the menu around it may have the keys, or whoever opened it
    Accessible.name: text
    Accessible.role: hasRadioSign ? Accessible.RadioButton : Accessible.MenuItem
    Accessible.onPressAction: chosen()

    // While it is black it covers the dots of the row above as well: they would fray its edge.
    Rectangle {
        anchors.fill: parent
        anchors.topMargin: touch.containsPress ? -dots.height : 0
        color: menu_row.ground
    }

    Rectangle {
        id: ring

        anchors.left: parent.left
        anchors.leftMargin: menu_row.sidePadding
        border.color: menu_row.ink
        border.width: Global.pixelsFromDesign(4)
        color: menu_row.ground
        height: width
        radius: width / 2
        visible: menu_row.hasRadioSign
        width: Global.pixelsFromDesign(48)
        y: Math.round((menu_row.height - height) / 2)

        Rectangle {
            anchors.fill: parent
            anchors.margins: Global.pixelsFromDesign(12)
            color: menu_row.ink
            radius: width / 2
            visible: menu_row.checked
        }
    }

    Image {
        id: image

        anchors.left: parent.left
        anchors.leftMargin: menu_row.sidePadding
        source: menu_row.icon === "" ? ""
            : (touch.containsPress ? "image://resource_inv/" : "image://resource/") + menu_row.icon
        visible: menu_row.icon !== ""
        y: Math.round((menu_row.height - height) / 2)
        Accessible.ignored: true
    }

    StyledText {
        anchors.left: ring.visible ? ring.right : image.visible ? image.right : parent.left
        anchors.leftMargin: ring.visible || image.visible ? Global.pixelsFromDesign(24) : menu_row.sidePadding
        anchors.right: parent.right
        anchors.rightMargin: menu_row.sidePadding
        color: menu_row.ink
        elide: Text.ElideRight
        maximumLineCount: 1
        styledFont: menu_row.bold ? FontStyles.BodyLBold : FontStyles.BodyL
        text: menu_row.text
        y: Math.round((menu_row.height - height) / 2)
        Accessible.ignored: true
    }

    DottedSeparator {
        id: dots

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.leftMargin: menu_row.sidePadding
        anchors.right: parent.right
        anchors.rightMargin: menu_row.sidePadding
        visible: menu_row.dotted && !touch.containsPress
    }

    // Clear of the panel's line and of the dots above and below.
    FocusFrame {
        anchors.margins: Global.pixelsFromDesign(8)
        focused: menu_row.current
        target: menu_row
    }

    MouseArea {
        id: touch

        anchors.fill: parent
        onClicked: menu_row.chosen()
    }
}
