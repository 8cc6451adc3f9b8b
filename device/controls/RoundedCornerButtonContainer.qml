// The frame of a button whose content is the screen's own: it inverts its ground while it is pressed, which it calls
// hovered, and the content chooses its colours by that. The screen gives it its accessible name.
import QtQuick
import com.lindenreed.controls

PressArea {
    id: button_container

    property color backgroundColor: GlobalValues.defaultBackgroundColor
    property color hoveredColor: GlobalValues.defaultBorderColor
    property alias border: ground.border
    property alias radius: ground.radius
    property alias visibleBorders: ground.visibleParts ///< top, right, bottom, left; 0: no line there
    readonly property bool hovered: pressed

    signal clicked()

    focusElement.visibleParts: visibleBorders

    onActivated: clicked()

    EdgeFrame {
        anchors.fill: parent
        anchors.margins: -Global.pixelsFromDesign(8)
        color: button_container.backgroundColor
        radius: ground.radius + Global.pixelsFromDesign(8)
        visibleParts: ground.visibleParts
    }

    EdgeFrame {
        id: ground

        anchors.fill: parent
        border.color: button_container.enabled ? GlobalValues.defaultBorderColor
            : GlobalValues.defaultDisabledTextColor
        border.width: GlobalValues.minimalLineThickness
        color: button_container.hovered ? button_container.hoveredColor : button_container.backgroundColor
        radius: GlobalValues.defaultElementBorderRadius
    }
}
