// The way to a folder: one crumb for each row of the model, from the top to where one stands. The nameless crumb is the
// top, the storages. The last crumb is always in sight: where the way is too long, its middle folds to "…", which leads
// to the nearest folder that it hides, and the crumb behind the fold is cut to the room that is left.
import QtQuick
import com.lindenreed.controls

Item {
    id: breadcrumbs

    property alias model: names.model ///< rows with a role "name"

    readonly property int gap: Global.pixelsFromDesign(24)
    readonly property int chevron: Global.pixelsFromDesign(28)
    readonly property int homeSize: Global.pixelsFromDesign(56)
    /// Crumbs touch each other in the middle of the chevrons between them.
    readonly property int padding: gap + chevron / 2
    readonly property int sideMargin: GlobalValues.defaultListViewSideMargin - padding
    /// A crumb is not cut narrower than a few letters.
    readonly property int leastCut: Global.pixelsFromDesign(160) + 2 * padding

    property var shown: [] ///< crumbs with the members row, text, name, home, last, left and width

    signal clicked(int index)

    function crumb(row: int, isFolded: bool): var {
        const own = names.itemAt(row) as Text
        const label = isFolded ? fold_text : own
        const isHome = label.text === ""
        const content = isHome ? homeSize : Math.ceil(label.implicitWidth)
        return {
            row: row, text: label.text, name: own.text, home: isHome,
            last: !isFolded && row === names.count - 1,
            width: Math.max(content + 2 * padding, Global.pixelsFromDesign(106))
        }
    }

    function excess(crumbs: var): int {
        return crumbs.reduce((sum, each) => sum + each.width, 0) - (width - 2 * sideMargin)
    }

    function fold(): void {
        const all = []
        for (let i = 0; i < names.count; ++i) {
            if (!names.itemAt(i))
                return // rows are still coming
            all.push(crumb(i, false))
        }
        let crumbs = all
        for (let hidden = 0; excess(crumbs) > 0 && hidden <= all.length - 2; ++hidden) {
            if (hidden > 0)
                crumbs = [all[0], crumb(hidden, true)].concat(all.slice(hidden + 1))
            const first = all[hidden + 1]
            if (!first.last && first.width - excess(crumbs) >= leastCut)
                first.width -= Math.max(excess(crumbs), 0)
        }
        if (crumbs.length > 0)
            crumbs[crumbs.length - 1].width -= Math.max(excess(crumbs), 0)
        let left = sideMargin
        for (const each of crumbs) {
            each.left = left
            left += each.width
        }

        const hadFocus = Array.from(bar.children).some(each => each.activeFocus)
        shown = crumbs
        if (hadFocus && crumbs.length > 0)
            shown_crumbs.itemAt(crumbs.length - 1).forceActiveFocus()
    }

    function moveFocus(at: int): void {
        if (at >= 0 && at < shown_crumbs.count)
            shown_crumbs.itemAt(at).forceActiveFocus()
    }

    implicitHeight: GlobalValues.breadcrumbsHeight
    implicitWidth: parent ? parent.width : 0

    onWidthChanged: Qt.callLater(fold)

    StyledText {
        id: fold_text

        styledFont: FontStyles.BodyS
        text: "…"
        visible: false
    }

    Repeater {
        id: names

        onItemAdded: Qt.callLater(breadcrumbs.fold)
        onItemRemoved: Qt.callLater(breadcrumbs.fold)

        StyledText {
            id: measured

            required property int index
            required property string name

            styledFont: measured.index === names.count - 1 ? FontStyles.BodySBold : FontStyles.BodyS
            text: measured.name
            visible: false
            onImplicitWidthChanged: Qt.callLater(breadcrumbs.fold)
            onTextChanged: Qt.callLater(breadcrumbs.fold)
        }
    }

    Item {
        id: bar

        anchors.fill: parent

        Repeater {
            id: shown_crumbs

            model: breadcrumbs.shown

            PressTarget {
                id: shown_crumb

                required property int index
                required property var modelData

                height: bar.height
                inset: breadcrumbs.chevron / 2
                width: shown_crumb.modelData.width
                x: shown_crumb.modelData.left

                Accessible.name: shown_crumb.modelData.name === "" ? qsTr("@Storages") : shown_crumb.modelData.name

                Keys.onLeftPressed: breadcrumbs.moveFocus(shown_crumb.index - 1)
                Keys.onRightPressed: breadcrumbs.moveFocus(shown_crumb.index + 1)

                onAction: breadcrumbs.clicked(shown_crumb.modelData.row)

                Image {
                    rotation: -90
                    source: "image://resource/arrow_down"
                    sourceSize.width: breadcrumbs.chevron
                    visible: shown_crumb.index > 0
                    x: -Math.round(width / 2)
                    y: Math.round((shown_crumb.height - height) / 2)
                    Accessible.ignored: true
                }

                Image {
                    source: shown_crumb.pressed ? "image://resource_inv/home" : "image://resource/home"
                    sourceSize.width: breadcrumbs.homeSize
                    visible: shown_crumb.modelData.home
                    x: Math.round((shown_crumb.width - width) / 2)
                    y: Math.round((shown_crumb.height - height) / 2)
                    Accessible.ignored: true
                }

                StyledText {
                    color: shown_crumb.ink
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    styledFont: shown_crumb.modelData.last ? FontStyles.BodySBold : FontStyles.BodyS
                    text: shown_crumb.modelData.text
                    width: Math.min(Math.ceil(implicitWidth), shown_crumb.width - 2 * breadcrumbs.padding)
                    // By its letters: what is cut may leave part of a letter's width.
                    x: Math.round((shown_crumb.width - contentWidth) / 2)
                    y: Math.round((shown_crumb.height - height) / 2)
                    Accessible.ignored: true
                }
            }
        }
    }
}
