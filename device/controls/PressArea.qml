// What all buttons have in common: a touch, Return, Enter or Space while they have the focus, and the accessible press
// action activate them, once each.
import QtQuick
import com.lindenreed.controls

Item {
    id: press_area

    readonly property bool pressed: touch.containsPress && enabled
    property alias focusElement: focus_frame

    signal activated()

    function activate(): void {
        if (enabled)
            activated()
    }

    activeFocusOnTab: true

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

    FocusFrame {
        id: focus_frame

        target: press_area
    }

    MouseArea {
        id: touch

        anchors.fill: parent
        onClicked: press_area.activate()
    }
}
