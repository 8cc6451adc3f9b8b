// The sign of a switch: a body with a knob, white and left when off, black with the knob at the right when on.
import QtQuick
import com.lindenreed.controls

Rectangle {
    id: switch_sign

    property bool checked: false
    property color ink: GlobalValues.defaultBorderColor
    property color paper: GlobalValues.defaultBackgroundColor

    border.color: ink
    border.width: Global.pixelsFromDesign(4)
    color: checked ? ink : paper
    height: Global.pixelsFromDesign(60)
    radius: height / 2
    width: Global.pixelsFromDesign(112)

    Rectangle {
        readonly property int gap: Math.round((switch_sign.height - height) / 2)

        border.color: switch_sign.ink
        border.width: switch_sign.checked ? 0 : switch_sign.border.width
        color: switch_sign.paper
        height: Global.pixelsFromDesign(40)
        radius: height / 2
        width: height
        x: switch_sign.checked ? switch_sign.width - width - gap : gap
        y: gap
    }
}
