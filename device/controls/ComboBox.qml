// A drop-down: shows the row of its menu whose uid_ is selected, and opens the menu to choose another one.
//
// It keeps the keys' attention while the menu is open and hands the keys over to it.
import QtQuick
import com.lindenreed.controls

PressArea {
    id: combo_box

    property alias menuItems: rows.model
    property alias selectedUid: rows.selectedUid ///< -1, or a uid_ that no row has: nothing is selected
    property string preffix_text
    property real max_width: Infinity ///< pixels, of a combo box that is as wide as its text
    property bool show_border: false
    property bool highlightSelected: true ///< the selected row of the menu is bold
    property int styledFont: FontStyles.BodyBold
    property bool isOpened: false

    readonly property bool hasRadioSigns: state === "RadioTextButton"
    readonly property int padding: show_border ? Global.pixelsFromDesign(14) : 0
    /// Text without a border begins at the edge; the ground and the frame around it reach beyond.
    readonly property int overhang: show_border ? 0 : Global.pixelsFromDesign(8)
    readonly property int spaceAtRight: padding + arrow.width + Global.pixelsFromDesign(10)
    readonly property color ink: pressed ? GlobalValues.defaultBackgroundColor
        : enabled ? GlobalValues.defaultBorderColor : GlobalValues.defaultDisabledTextColor

    signal choosed(int uid)

    function open(): void {
        if (isOpened)
            return
        forceActiveFocus()
        isOpened = true
    }

    function close(): void {
        isOpened = false
    }

    function choose(uid: int): void {
        close()
        rows.select(uid)
        choosed(uid)
    }

    /// To be called when the screen turns: the menu lies at a place that is no longer the combo box's.
    function orientationChanged(): void {
        close()
    }

    focusElement.focused: activeFocus && !isOpened // else the row has the frame
    focusElement.anchors.leftMargin: -overhang
    focusElement.anchors.rightMargin: -overhang
    implicitHeight: GlobalValues.defaultTextButtonHeight
    implicitWidth: Math.max(0, Math.min(Math.floor(max_width), padding + spaceAtRight
        + Math.ceil(Math.max(prefix.implicitWidth, value.implicitWidth))))

    Accessible.name: preffix_text + rows.selectedText
    Accessible.role: Accessible.ComboBox

    Keys.forwardTo: menu.item ? [menu.item] : []

    onActivated: open()
    onEnabledChanged: if (!enabled) close()
    onVisibleChanged: if (!visible) close()

    MenuRows {
        id: rows
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -combo_box.overhang
        anchors.rightMargin: -combo_box.overhang
        border.color: combo_box.pressed ? GlobalValues.defaultBorderColor : combo_box.ink
        border.width: combo_box.show_border ? GlobalValues.minimalLineThickness : 0
        color: combo_box.pressed ? GlobalValues.defaultBorderColor : GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultElementBorderRadius
        visible: combo_box.show_border || combo_box.pressed
    }

    StyledText {
        id: prefix

        /// Its line has room above and below that the button has not.
        readonly property int overlap: Global.pixelsFromDesign(6)

        color: combo_box.ink
        elide: Text.ElideRight
        font.pixelSize: Global.pixelsFromDesign(32)
        maximumLineCount: 1
        text: combo_box.preffix_text
        visible: text !== ""
        width: value.width
        x: combo_box.padding
        y: Math.round((combo_box.height - height + overlap - value.height) / 2)
        Accessible.ignored: true
    }

    StyledText {
        id: value

        color: combo_box.ink
        elide: Text.ElideRight
        maximumLineCount: 1
        styledFont: combo_box.styledFont
        text: rows.selectedText
        width: Math.max(0, combo_box.width - combo_box.padding - combo_box.spaceAtRight)
        x: combo_box.padding
        y: prefix.visible ? prefix.y + prefix.height - prefix.overlap : Math.round((combo_box.height - height) / 2)
        Accessible.ignored: true
    }

    Image {
        id: arrow

        opacity: combo_box.enabled ? 1 : 86 / 256
        source: combo_box.pressed ? "image://resource_inv/arrow_down" : "image://resource/arrow_down"
        x: combo_box.width - combo_box.padding - width
        y: Math.round((combo_box.height - height) / 2)
        Accessible.ignored: true
    }

    Loader {
        id: menu

        active: combo_box.isOpened
        anchors.fill: parent
        parent: combo_box.isOpened ? combo_box.Window.contentItem : combo_box

        sourceComponent: MenuOverlay {
            id: overlay

            // The combo box may still move: the keyboard goes when a field loses the focus, and the dialog comes back.
            function findArea(): void {
                area = combo_box.mapToItem(overlay, Qt.rect(0, 0, combo_box.width, combo_box.height))
            }

            checkedIsBold: combo_box.highlightSelected
            checkedRow: rows.selectedRow
            delegateName: combo_box.hasRadioSigns ? "RadioButton" : ""
            gap: Global.pixelsFromDesign(8)
            leftAligned: true
            maximumRows: 7
            minimumWidth: combo_box.width
            model: combo_box.menuItems
            rowHeight: Global.pixelsFromDesign(112)

            onChoosed: uid => combo_box.choose(uid)
            onClose: combo_box.close()
            onHeightChanged: findArea()
            onWidthChanged: findArea()
            Component.onCompleted: {
                toStart()
                findArea()
            }

            Connections {
                function onKeyboardRectangleChanged() {
                    Qt.callLater(overlay.findArea)
                }

                target: Qt.inputMethod
            }
        }
    }
}
