// A menu over the whole window: its panel beside an area, and everything outside, where a tap closes it.
import QtQuick
import com.lindenreed.controls

Item {
    id: menu_overlay

    property rect area ///< what the menu belongs to, in this item's coordinates
    property bool leftAligned: false ///< with the area's left edge; else with its right one
    property int gap: GlobalValues.defaultMenuMargin
    property bool checkedCanBeChosen: true

    property alias model: panel.model
    property alias delegateName: panel.delegateName
    property alias title: panel.title
    property alias checkedRow: panel.checkedRow
    property alias checkedIsBold: panel.checkedIsBold
    property alias rowHeight: panel.rowHeight
    property alias maximumRows: panel.maximumRows
    property alias minimumWidth: panel.minimumWidth

    readonly property int margin: GlobalValues.separatorSideOffset

    signal choosed(int uid)
    signal close()

    function toStart(): void {
        panel.toStart()
    }

    function rowOfText(rowText: string): int {
        return panel.rowOfText(rowText)
    }

    /// Does what a key means while the menu is open; all keys are the menu's.
    function handleKey(event: var): void {
        event.accepted = true
        if (!panel.handleKey(event.key, event.isAutoRepeat) && !event.isAutoRepeat
                && (event.key === Qt.Key_Escape || event.key === Qt.Key_Back))
            close()
    }

    function clamped(value: real, size: real, room: real): int {
        return Math.round(Math.max(margin, Math.min(value, room - margin - size)))
    }

    /// Where the panel's upper left corner goes: under the area, above it, at its right, at its left; where there is no
    /// room, over as little of it as may be.
    function place(): point {
        const x = clamped(leftAligned ? area.x : area.x + area.width - panel.width, panel.width, width)
        const y = clamped(area.y, panel.height, height)
        if (area.y + area.height + gap + panel.height <= height - margin)
            return Qt.point(x, Math.max(margin, Math.round(area.y + area.height + gap)))
        if (area.y - gap - panel.height >= margin)
            return Qt.point(x, clamped(area.y - gap - panel.height, panel.height, height))
        if (area.x + area.width + gap + panel.width <= width - margin)
            return Qt.point(Math.max(margin, Math.round(area.x + area.width + gap)), y)
        if (area.x - gap - panel.width >= margin)
            return Qt.point(clamped(area.x - gap - panel.width, panel.width, width), y)
        const isInUpperHalf = area.y + area.height / 2 < height / 2
        return Qt.point(x, clamped(isInUpperHalf ? height : 0, panel.height, height))
    }

    Keys.onPressed: event => handleKey(event)

    OutsideArea {
        onClose: menu_overlay.close()
    }

    MenuPanel {
        id: panel

        readonly property point corner: menu_overlay.place()

        maximumHeight: menu_overlay.height - 2 * menu_overlay.margin
        maximumWidth: menu_overlay.width - 2 * menu_overlay.margin
        x: corner.x
        y: corner.y
        onChosen: row => {
            if (menu_overlay.checkedCanBeChosen || row !== menu_overlay.checkedRow)
                menu_overlay.choosed(panel.uidOf(row))
        }
    }
}
