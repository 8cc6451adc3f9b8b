// A row that sets one level of the light: a sign, a smaller and a larger step, and a rail with a knob between them. It
// only tells what is wanted: whoever owns the level sets it.
import QtQuick
import com.lindenreed.controls

Item {
    id: light_slider

    property string name
    property url image_src
    property int value: 0
    readonly property int minimumValue: 0
    readonly property int maximumValue: 100
    readonly property int stepSize: 5

    readonly property int sidePadding: Global.pixelsFromDesign(12)
    readonly property int stepIcon: Global.pixelsFromDesign(56)
    readonly property int stepTarget: Global.pixelsFromDesign(112)
    readonly property color ink: enabled ? GlobalValues.defaultBorderColor : GlobalValues.defaultDisabledTextColor

    signal moved(int level)

    function moveTo(level: int): void {
        const wanted = Math.max(minimumValue, Math.min(maximumValue, level))
        if (enabled && wanted !== value)
            moved(wanted)
    }

    function passFocus(forward: bool): void {
        const next = nextItemInFocusChain(forward)
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }

    activeFocusOnTab: true
    implicitHeight: Global.pixelsFromDesign(144)
    implicitWidth: parent ? parent.width : 0

    Accessible.focusable: true
    Accessible.name: name
    Accessible.role: Accessible.Slider
    Accessible.onDecreaseAction: moveTo(value - stepSize)
    Accessible.onIncreaseAction: moveTo(value + stepSize)

    Keys.onDownPressed: passFocus(true)
    Keys.onLeftPressed: moveTo(value - stepSize)
    Keys.onRightPressed: moveTo(value + stepSize)
    Keys.onUpPressed: passFocus(false)

    Image {
        // A third of black on white is #AAAAAA, after the rounding of the painter, which takes 256 steps for opaque.
        opacity: light_slider.enabled ? 1 : 86 / 256
        source: light_slider.image_src
        x: light_slider.sidePadding
        y: Math.round((light_slider.height - height) / 2)
        Accessible.ignored: true
    }

    BitmapButton {
        id: smaller

        activeFocusOnTab: false // the slider's own keys do the same
        height: light_slider.height
        icon: "image://resource/minus"
        iconSize: light_slider.stepIcon
        width: light_slider.stepTarget
        x: light_slider.sidePadding + Global.pixelsFromDesign(72)
        Accessible.ignored: true
        onAction: light_slider.moveTo(light_slider.value - light_slider.stepSize)
    }

    BitmapButton {
        id: larger

        activeFocusOnTab: false
        height: light_slider.height
        icon: "image://resource/plus"
        iconSize: light_slider.stepIcon
        width: light_slider.stepTarget
        // The sign's box ends on the content line, its target a little behind it.
        x: light_slider.width - light_slider.sidePadding - Math.round((width + light_slider.stepIcon) / 2)
        Accessible.ignored: true
        onAction: light_slider.moveTo(light_slider.value + light_slider.stepSize)
    }

    Item {
        id: rail

        readonly property int travel: width - knob.width

        height: light_slider.height
        width: larger.x - x
        x: smaller.x + smaller.width

        Rectangle {
            id: rest

            color: GlobalValues.defaultDisabledTextColor
            height: Global.pixelsFromDesign(8)
            radius: height / 2
            width: rail.travel
            x: knob.width / 2
            y: Math.round((rail.height - height) / 2)
        }

        Rectangle {
            color: light_slider.ink
            height: rest.height
            radius: rest.radius
            width: knob.x
            x: rest.x
            y: rest.y
        }

        Rectangle {
            id: knob

            border.color: light_slider.ink
            border.width: Global.pixelsFromDesign(6)
            color: touch.pressed ? light_slider.ink : GlobalValues.defaultBackgroundColor
            height: width
            radius: width / 2
            width: 2 * Math.round(Global.pixelsFromDesign(56) / 2)
            x: Math.round(rail.travel * light_slider.value / light_slider.maximumValue)
            y: Math.round((rail.height - height) / 2)
        }

        MouseArea {
            id: touch

            function follow(x: real): void {
                light_slider.moveTo(Math.round((x - knob.width / 2) / rail.travel * light_slider.maximumValue))
            }

            anchors.fill: parent
            preventStealing: true
            onPositionChanged: mouse => follow(mouse.x)
            onPressed: mouse => follow(mouse.x)
        }
    }

    FocusFrame {
        target: light_slider
    }
}
