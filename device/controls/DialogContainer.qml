// A dialog over the whole window: a frame with a title, and under it the children, one below the other, each as wide
// as it makes itself. While it shows, nothing behind it can be touched or gets the keys' attention. It stays above the
// keyboard.
import QtQuick
import com.lindenreed.controls

FocusScope {
    id: dialog_container

    property string title
    property int verticalOffset: Global.pixelsFromDesign(240) ///< of the upper edge, in the state "VerticalTop"
    property int dialogWidth: 0 ///< 0: as wide as the screen allows
    default property alias content: column.data

    readonly property int line: GlobalValues.dialogBorderWidth
    readonly property int mat: Global.pixelsFromDesign(8)
    readonly property int sideMargin: GlobalValues.separatorSideOffset
    readonly property int widest: width - 2 * sideMargin
    /// Where the keyboard begins, or the window ends.
    readonly property int lowerEdge: Qt.inputMethod.visible && Qt.inputMethod.keyboardRectangle.height > 0
        ? Math.min(height, Qt.inputMethod.keyboardRectangle.y) : height

    /// A tap outside, or the key that leads back. Whoever opened the dialog hides it.
    signal close()

    /// To the next thing inside that takes the keys, and from the last one to the first.
    function moveFocus(forward: bool): void {
        let item = Window.activeFocusItem
        let first = null
        do {
            item = item ? item.nextItemInFocusChain(forward) : null
            if (!item || item === first)
                return // all round, and nothing inside takes them
            first = first ?? item
        } while (item === dialog_container || !focus_keeper.isInside(item))
        item.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }

    function takeFocus(): void {
        if (!visible || activeFocus || !focus_keeper.isOnTop())
            return
        focus_keeper.noteBefore()
        forceActiveFocus()
        if (Window.activeFocusItem === dialog_container)
            moveFocus(true)
    }

    function appear(): void {
        if (!visible)
            return
        focus_keeper.open()
        takeFocus()
    }

    implicitHeight: Window.height
    implicitWidth: Window.width

    Keys.onPressed: event => {
        event.accepted = true
        switch (event.key) {
        case Qt.Key_Up:
        case Qt.Key_Left:
        case Qt.Key_Backtab:
            moveFocus(false)
            break
        case Qt.Key_Down:
        case Qt.Key_Right:
        case Qt.Key_Tab:
            moveFocus(true)
            break
        case Qt.Key_Escape:
        case Qt.Key_Back:
            if (!event.isAutoRepeat)
                close()
            break
        }
    }

    onVisibleChanged: visible ? appear() : focus_keeper.close()
    // Focus that went to something behind comes back. Later: who closes a dialog gives the focus away first.
    onActiveFocusChanged: if (!activeFocus) Qt.callLater(takeFocus)
    // Later: whoever loads it puts it on top of the window first.
    Component.onCompleted: Qt.callLater(appear)

    ModalFocus {
        id: focus_keeper

        modal: dialog_container
        // Later: whoever closes what lay over the dialog gives the focus away first.
        onReturned: Qt.callLater(dialog_container.takeFocus)
    }

    OutsideArea {
        onClose: dialog_container.close()
    }

    Rectangle {
        anchors.fill: frame
        anchors.margins: -dialog_container.mat
        color: GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultDialogBorderRadius + dialog_container.mat
    }

    Rectangle {
        id: frame

        readonly property int lowest: dialog_container.lowerEdge - dialog_container.mat - height
        readonly property int wanted: dialog_container.state === "VerticalTop" ? dialog_container.verticalOffset
            : Math.round((dialog_container.lowerEdge - height) / 2)

        border.color: GlobalValues.defaultBorderColor
        border.width: dialog_container.line
        color: GlobalValues.defaultBackgroundColor
        height: column.y + column.height + dialog_container.line
        radius: GlobalValues.defaultDialogBorderRadius
        width: Math.min(dialog_container.widest, dialog_container.dialogWidth > 0 ? dialog_container.dialogWidth
            : Global.pixelsFromDesign(1100))
        x: Math.round((dialog_container.width - width) / 2)
        y: Math.max(dialog_container.mat, Math.min(wanted, lowest))

        Accessible.name: dialog_container.title
        Accessible.role: Accessible.Dialog

        // Neither the frame nor the mat is outside.
        MouseArea {
            anchors.fill: parent
            anchors.margins: -dialog_container.mat
        }

        Item {
            id: head

            anchors.left: parent.left
            anchors.margins: dialog_container.line
            anchors.right: parent.right
            anchors.top: parent.top
            height: visible ? Global.pixelsFromDesign(112) : 0
            visible: dialog_container.title !== ""

            StyledText {
                anchors.left: parent.left
                anchors.leftMargin: GlobalValues.dialogSidePadding
                anchors.right: parent.right
                anchors.rightMargin: GlobalValues.dialogSidePadding
                elide: Text.ElideRight
                maximumLineCount: 1
                styledFont: FontStyles.BodyLBold
                text: dialog_container.title
                y: Math.round((head.height - height) / 2)
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

        Column {
            id: column

            anchors.left: parent.left
            anchors.leftMargin: dialog_container.line
            anchors.right: parent.right
            anchors.rightMargin: dialog_container.line
            y: dialog_container.line + head.height
        }
    }
}
