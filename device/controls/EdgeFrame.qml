// A rectangle with lines on some of its sides alone: where a side has none, its neighbours run straight to the edge.
import QtQuick

Item {
    id: edge_frame

    property var visibleParts: [1, 1, 1, 1] ///< top, right, bottom, left; 0: no line there
    property alias border: rectangle.border
    property alias color: rectangle.color
    property alias radius: rectangle.radius

    /// How far the rectangle goes on behind the edge, so that its line and its round corners are cut off.
    function beyond(side: int): int {
        return visibleParts[side] ? 0 : Math.ceil(Math.max(radius, border.width))
    }

    clip: true

    Rectangle {
        id: rectangle

        anchors.fill: parent
        anchors.topMargin: -edge_frame.beyond(0)
        anchors.rightMargin: -edge_frame.beyond(1)
        anchors.bottomMargin: -edge_frame.beyond(2)
        anchors.leftMargin: -edge_frame.beyond(3)
    }
}
