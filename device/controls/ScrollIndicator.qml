// Where a list stands: a rail with a bar, beside the list's right margin.
import QtQuick
import com.lindenreed.controls

Item {
    id: scroll_indicator

    property real length: 0
    property real indicatorLength: 0
    property real offset: 0

    readonly property int edge: Global.pixelsFromDesign(16)

    // The position in percent, for assistive input.
    readonly property int value: length > indicatorLength ? Math.round(100 * offset / (length - indicatorLength)) : 0
    readonly property int minimumValue: 0
    readonly property int maximumValue: 100

    implicitHeight: length
    implicitWidth: bar.width + edge

    Accessible.role: Accessible.ScrollBar

    Rectangle {
        color: GlobalValues.defaultDisabledTextColor
        height: Math.round(scroll_indicator.length)
        width: GlobalValues.minimalLineThickness
        x: bar.x + Math.floor((bar.width - width) / 2)
    }

    Rectangle {
        id: bar

        // Even, so that the rail stands in its middle.
        color: GlobalValues.defaultBorderColor
        height: Math.round(Math.min(scroll_indicator.indicatorLength, scroll_indicator.length))
        radius: width / 2
        width: Global.pixelsFromDesign(8)
        x: scroll_indicator.width - scroll_indicator.edge - width
        y: Math.round(Math.max(0, Math.min(scroll_indicator.offset, scroll_indicator.length - height)))
    }
}
