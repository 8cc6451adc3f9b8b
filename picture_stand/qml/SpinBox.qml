// A number between two buttons that step it down and up.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: wrapper

    property real value: 50
    property real min_value: 0
    property real max_value: 100
    property real step: 1

    /// After each press, also of one that the limits leave without effect.
    signal changeValue(real value)

    function decrease() {
        value = Math.max(min_value, value - step)
        changeValue(value)
    }

    function increase() {
        value = Math.min(max_value, value + step)
        changeValue(value)
    }

    implicitHeight: minus.height
    implicitWidth: plus.x + plus.width

    Accessible.name: number.text
    Accessible.role: Accessible.SpinBox
    Accessible.onDecreaseAction: decrease()
    Accessible.onIncreaseAction: increase()

    BitmapButton {
        id: minus

        anchors {
            left: parent.left
            verticalCenter: parent.verticalCenter
        }
        icon: "image://resource/minus"
        pressedIcon: "image://resource/minus_inv"
        Accessible.ignored: true
        Keys.onRightPressed: plus.forceActiveFocus()
        onAction: wrapper.decrease()
    }

    StyledText {
        id: number

        anchors {
            left: minus.right
            verticalCenter: parent.verticalCenter
        }
        width: Global.dp(134 * 0.53)
        horizontalAlignment: Text.AlignHCenter
        styledFont: FontStyles.BodyS
        text: wrapper.value
        Accessible.ignored: true
    }

    BitmapButton {
        id: plus

        anchors {
            left: number.right
            verticalCenter: parent.verticalCenter
        }
        icon: "image://resource/plus"
        pressedIcon: "image://resource/plus_inv"
        Accessible.ignored: true
        Keys.onLeftPressed: minus.forceActiveFocus()
        onAction: wrapper.increase()
    }
}
