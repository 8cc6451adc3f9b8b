// A button that is an icon. The screen gives it its accessible name.
import QtQuick
import com.lindenreed.controls

Item {
    id: bitmap_button

    property url icon
    property url pressedIcon
    property url disabledIcon
    readonly property bool pressed: touch.containsPress && enabled

    signal action()

    function shownIcon(): url {
        if (!enabled && String(disabledIcon) !== "")
            return disabledIcon
        if (!pressed)
            return icon
        if (String(pressedIcon) !== "")
            return pressedIcon
        return String(icon).replace("image://resource/", "image://resource_inv/")
    }

    function activate(): void {
        if (enabled)
            action()
    }

    activeFocusOnTab: true
    implicitHeight: Global.pixelsFromDesign(112)
    implicitWidth: Global.pixelsFromDesign(136)

    Accessible.focusable: true
    Accessible.role: Accessible.Button
    Accessible.onPressAction: activate()

    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter && event.key !== Qt.Key_Space)
            return
        event.accepted = true
        if (!event.isAutoRepeat)
            activate()
    }

    Rectangle {
        color: GlobalValues.defaultBorderColor
        height: width
        radius: GlobalValues.defaultElementBorderRadius
        visible: bitmap_button.pressed
        width: Math.min(Global.pixelsFromDesign(104), Math.floor(bitmap_button.width), Math.floor(bitmap_button.height))
        x: Math.round((bitmap_button.width - width) / 2)
        y: Math.round((bitmap_button.height - height) / 2)
    }

    Image {
        id: image

        // A third of black on white is the grey of things that are asleep: #AAAAAA, after the rounding of the painter,
        // which takes 256 steps for opaque.
        opacity: bitmap_button.enabled || String(bitmap_button.disabledIcon) !== "" ? 1 : 86 / 256
        // Whole pixels: half a one would blur every line of the icon.
        x: Math.round((bitmap_button.width - width) / 2)
        y: Math.round((bitmap_button.height - height) / 2)
        source: bitmap_button.shownIcon()
        Accessible.ignored: true
    }

    FocusFrame {
        target: bitmap_button
    }

    MouseArea {
        id: touch

        anchors.fill: parent
        onClicked: bitmap_button.activate()
    }
}
