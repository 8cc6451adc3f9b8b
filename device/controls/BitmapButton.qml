// A button that is an icon. The screen gives it its accessible name.
import QtQuick
import com.lindenreed.controls

PressArea {
    id: bitmap_button

    property url icon
    property url pressedIcon
    property url disabledIcon
    property int iconSize: 0 ///< pixels each way; 0: the icon's natural size

    readonly property int room: Math.floor(Math.min(width, height))
    /// Square, as the ground of the pressed button is: in a header it clears the title and the line below.
    readonly property int frameSize: Math.min(Global.pixelsFromDesign(112), room)
    readonly property int frameLeft: Math.round((width - frameSize) / 2)
    readonly property int frameTop: Math.round((height - frameSize) / 2)

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

    focusElement.anchors.bottomMargin: height - frameTop - frameSize
    focusElement.anchors.leftMargin: frameLeft
    focusElement.anchors.rightMargin: width - frameLeft - frameSize
    focusElement.anchors.topMargin: frameTop
    implicitHeight: Global.pixelsFromDesign(112)
    implicitWidth: Global.pixelsFromDesign(136)

    onActivated: action()

    Rectangle {
        color: GlobalValues.defaultBorderColor
        height: width
        radius: GlobalValues.defaultElementBorderRadius
        visible: bitmap_button.pressed
        width: Math.min(Global.pixelsFromDesign(104), bitmap_button.room)
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
        sourceSize: bitmap_button.iconSize > 0 ? Qt.size(bitmap_button.iconSize, bitmap_button.iconSize) : undefined
        Accessible.ignored: true
    }
}
