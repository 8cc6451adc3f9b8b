// What inverts as a whole when it is pressed. Whoever is made of it draws on it in `ink` and gives it its accessible
// name.
import QtQuick
import com.lindenreed.controls

PressArea {
    id: press_target

    property int radius: GlobalValues.listElementHoverFrameBorderRadius
    property int inset: 0 ///< pixels at the left and right that take touches and are not drawn
    readonly property color ink: pressed ? GlobalValues.defaultBackgroundColor
        : enabled ? GlobalValues.defaultBorderColor : GlobalValues.defaultDisabledTextColor
    readonly property color paper: pressed ? GlobalValues.defaultBorderColor : GlobalValues.defaultBackgroundColor

    signal action()

    function passFocus(forward: bool): void {
        const next = nextItemInFocusChain(forward)
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }

    focusElement.anchors.leftMargin: inset
    focusElement.anchors.rightMargin: inset

    Keys.onDownPressed: passFocus(true)
    Keys.onUpPressed: passFocus(false)

    onActivated: action()

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: press_target.inset
        anchors.rightMargin: press_target.inset
        color: GlobalValues.defaultBorderColor
        radius: press_target.radius
        visible: press_target.pressed
    }
}
