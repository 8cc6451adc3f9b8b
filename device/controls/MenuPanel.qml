// The panel of a menu: a frame on its mat, a title where there is one, and rows that scroll where they are many.
//
// It never has the focus itself: whoever has it hands the keys over, so that a control may keep it while its menu is
// open.
import QtQuick
import com.lindenreed.controls

Item {
    id: menu_panel

    property alias model: rows.model ///< a list model with uid_, text_ and image_
    property string delegateName ///< "ImageTextButton", "RadioButton"; anything else: text alone
    property string title
    property int checkedRow: -1
    property bool checkedIsBold: true
    property int rowHeight: Global.pixelsFromDesign(120)
    property int maximumRows: 1000000
    property int maximumHeight: 1000000
    property int maximumWidth: 1000000
    property int minimumWidth: Global.pixelsFromDesign(480)

    readonly property bool hasRadioSigns: delegateName === "RadioButton"
    readonly property bool hasIcons: delegateName === "ImageTextButton"
    readonly property int mat: Global.pixelsFromDesign(8)
    readonly property int line: GlobalValues.dialogBorderWidth
    readonly property int sidePadding: Global.pixelsFromDesign(32)
    readonly property int signWidth: hasRadioSigns ? Global.pixelsFromDesign(48) + Global.pixelsFromDesign(24)
        : hasIcons ? Global.pixelsFromDesign(72) + Global.pixelsFromDesign(24) : 0
    readonly property int wantedWidth: 2 * (line + sidePadding) + list.spaceForIndicator
        + Math.max(signWidth + textWidth, Math.ceil(heading.implicitWidth))
    readonly property int otherHeight: list.anchors.topMargin + list.anchors.bottomMargin
    readonly property int rowsThatFit: Math.max(1, Math.floor((maximumHeight - otherHeight) / rowHeight))
    readonly property int shownRows: Math.min(list.count, maximumRows, rowsThatFit)

    property int textWidth: 0

    signal chosen(int row)

    /// To be called when the menu opens: makes it as wide as its texts are now, and begins at the checked row.
    function toStart(): void {
        textWidth = rows.widestText(measure.font)
        moveTo(checkedRow)
    }

    function rowOfText(rowText: string): int {
        return rows.rowOfText(rowText)
    }

    function uidOf(row: int): int {
        return rows.uid(row)
    }

    function moveTo(row: int): void {
        list.currentIndex = Math.max(0, Math.min(row, list.count - 1))
        list.positionViewAtIndex(list.currentIndex, ListView.Contain)
    }

    /// Does what a key means in a menu; false: nothing, it is for somebody else.
    function handleKey(key: int, isRepeated: bool): bool {
        switch (key) {
        case Qt.Key_Up:
            moveTo(list.currentIndex - 1)
            return true
        case Qt.Key_Down:
            moveTo(list.currentIndex + 1)
            return true
        case Qt.Key_PageUp:
            moveTo(list.currentIndex - shownRows)
            return true
        case Qt.Key_PageDown:
            moveTo(list.currentIndex + shownRows)
            return true
        case Qt.Key_Return:
        case Qt.Key_Enter:
        case Qt.Key_Space:
            if (!isRepeated && list.currentIndex >= 0)
                chosen(list.currentIndex)
            return true
        }
        return false
    }

    height: otherHeight + shownRows * rowHeight
    width: Math.min(maximumWidth, Math.max(minimumWidth, wantedWidth))

    Accessible.name: title
    Accessible.role: Accessible.PopupMenu

    MenuRows {
        id: rows
    }

    // Rows are as wide as they are when checked: choosing another one moves nothing.
    StyledText {
        id: measure

        styledFont: FontStyles.BodyLBold
        visible: false
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: -menu_panel.mat
        color: GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultDialogBorderRadius + menu_panel.mat
    }

    Rectangle {
        anchors.fill: parent
        border.color: GlobalValues.defaultBorderColor
        border.width: menu_panel.line
        color: GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultDialogBorderRadius
    }

    // Neither the frame nor the mat is outside.
    MouseArea {
        anchors.fill: parent
        anchors.margins: -menu_panel.mat
    }

    Item {
        id: head

        anchors.left: parent.left
        anchors.margins: menu_panel.line
        anchors.right: parent.right
        anchors.top: parent.top
        height: Global.pixelsFromDesign(104)
        visible: menu_panel.title !== ""

        StyledText {
            id: heading

            anchors.left: parent.left
            anchors.leftMargin: menu_panel.sidePadding
            anchors.right: parent.right
            anchors.rightMargin: menu_panel.sidePadding
            elide: Text.ElideRight
            maximumLineCount: 1
            styledFont: FontStyles.BodySBold
            text: menu_panel.title
            y: GlobalValues.defaultMenuMargin + Math.round((head.height - GlobalValues.defaultMenuMargin - height) / 2)
            Accessible.role: Accessible.Heading
        }

        Rectangle {
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            color: GlobalValues.defaultBorderColor
            height: GlobalValues.minimalLineThickness
        }
    }

    ListView {
        id: list

        readonly property int spaceForIndicator: interactive ? indicator.width + menu_panel.mat : 0

        anchors.fill: parent
        anchors.bottomMargin: menu_panel.line + GlobalValues.defaultMenuMargin
        anchors.leftMargin: menu_panel.line
        anchors.rightMargin: menu_panel.line + spaceForIndicator
        anchors.topMargin: menu_panel.line + (head.visible ? head.height : GlobalValues.defaultMenuMargin)
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: 0
        highlightFollowsCurrentItem: false
        interactive: count > menu_panel.shownRows
        keyNavigationEnabled: false
        model: menu_panel.model
        pressDelay: interactive ? GlobalValues.listPressDelay : 0

        delegate: MenuRow {
            required property int index
            required property var model

            bold: checked && menu_panel.checkedIsBold
            checked: index === menu_panel.checkedRow
            current: ListView.isCurrentItem
            // Between two rows: there are none below the last one, nor below the last one in sight.
            dotted: index < ListView.view.count - 1
                && y + height < ListView.view.contentY + ListView.view.height
            hasRadioSign: menu_panel.hasRadioSigns
            height: menu_panel.rowHeight
            icon: menu_panel.hasIcons ? model.image_ ?? "" : ""
            text: model.text_ ?? ""
            width: ListView.view.width
            onChosen: menu_panel.chosen(index)
        }
    }

    ScrollIndicator {
        id: indicator

        anchors.right: parent.right
        anchors.rightMargin: menu_panel.line
        anchors.top: list.top
        anchors.topMargin: menu_panel.mat
        indicatorLength: Math.max(length * list.height / Math.max(list.contentHeight, 1),
                                  GlobalValues.scrollIndicatorMinimalLenght)
        length: list.height - 2 * menu_panel.mat
        offset: (length - indicatorLength) * list.contentY / Math.max(list.contentHeight - list.height, 1)
        visible: list.interactive
    }
}
