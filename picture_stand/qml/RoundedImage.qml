// A picture whose corners are rounded, each by its own radius, and that has a thin outline.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: wrapper

    property color bgColor: "#FFFFFF"
    property int radius_top_left: 0
    property int radius_top_right: 0
    property int radius_bottom_left: 0
    property int radius_bottom_right: 0
    property alias source: image.source

    AutoReloadImage {
        id: image

        anchors.fill: parent
        asynchronous: true
        cache: false
        fillMode: Image.PreserveAspectCrop
        sourceSize: Qt.size(width, height)
        Accessible.ignored: true
    }

    // Paper over the picture, with a hole of the rounded shape in it.
    Canvas {
        id: paper

        function outline(context) {
            const line = context.lineWidth / 2
            const right = width - line
            const bottom = height - line
            context.beginPath()
            context.moveTo(wrapper.radius_top_left + line, line)
            context.lineTo(right - wrapper.radius_top_right, line)
            context.quadraticCurveTo(right, line, right, line + wrapper.radius_top_right)
            context.lineTo(right, bottom - wrapper.radius_bottom_right)
            context.quadraticCurveTo(right, bottom, right - wrapper.radius_bottom_right, bottom)
            context.lineTo(line + wrapper.radius_bottom_left, bottom)
            context.quadraticCurveTo(line, bottom, line, bottom - wrapper.radius_bottom_left)
            context.lineTo(line, line + wrapper.radius_top_left)
            context.quadraticCurveTo(line, line, line + wrapper.radius_top_left, line)
            context.closePath()
        }

        anchors.fill: parent

        onPaint: {
            const context = getContext("2d")
            context.reset()
            context.fillStyle = wrapper.bgColor
            context.fillRect(0, 0, width, height)
            context.lineWidth = 1
            outline(context)
            context.globalCompositeOperation = "source-out"
            context.fill()
            context.globalCompositeOperation = "source-over"
            context.strokeStyle = "black"
            context.stroke()
        }
    }
}
