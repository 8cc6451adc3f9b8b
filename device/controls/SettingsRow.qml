// A row of a settings screen: an icon, a title and, at the right, what the kinds of row add.
import QtQuick
import com.lindenreed.controls

PressTarget {
    id: settings_row

    property string title
    property url image_src
    property url image_src_pressed
    property int titleFont: FontStyles.BodyL
    property int titleLeft: settings_row.sidePadding + Global.pixelsFromDesign(72 + 24)
    property int trailingWidth: 0 ///< pixels that the right part takes inside the padding

    /// The row is wider than the content line by this on each side, so that its frame clears what stands on the line.
    readonly property int sidePadding: Global.pixelsFromDesign(12)

    function shownIcon(): url {
        return pressed && String(image_src_pressed) !== "" ? image_src_pressed : image_src
    }

    implicitHeight: Global.pixelsFromDesign(144)
    implicitWidth: parent ? parent.width : 0

    Accessible.name: title

    Image {
        // A third of black on white is #AAAAAA, after the rounding of the painter, which takes 256 steps for opaque.
        opacity: settings_row.enabled ? 1 : 86 / 256
        source: settings_row.shownIcon()
        visible: String(settings_row.image_src) !== ""
        x: settings_row.sidePadding
        y: Math.round((settings_row.height - height) / 2)
        Accessible.ignored: true
    }

    StyledText {
        color: settings_row.ink
        elide: Text.ElideRight
        maximumLineCount: 2
        styledFont: settings_row.titleFont
        text: settings_row.title
        width: settings_row.width - x - settings_row.sidePadding - settings_row.trailingWidth
            - (settings_row.trailingWidth > 0 ? Global.pixelsFromDesign(24) : 0)
        wrapMode: Text.Wrap
        x: settings_row.titleLeft
        y: Math.round((settings_row.height - height) / 2)
        Accessible.ignored: true
    }
}
