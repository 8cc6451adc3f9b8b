// The frame around what has the keys' attention. Shown only on a device that is worked by keys.
import QtQuick
import com.lindenreed.controls

EdgeFrame {
    id: focus_frame

    required property Item target
    property bool focused: target.activeFocus

    anchors.fill: parent
    border.color: GlobalValues.defaultBorderColor
    border.width: GlobalValues.defaultFocusedElementBorderThickness
    color: "transparent"
    radius: GlobalValues.listElementHoverFrameBorderRadius
    visible: focused && !DeviceInfoProvider.isTouchDevice
    z: 1
}
