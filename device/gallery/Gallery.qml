// The window: one page at a time, stepped by the device's keys.
import QtQuick 2.12
import QtQuick.Window 2.12
import com.lindenreed.controls 1.0

Window {
    id: gallery

    readonly property var pages: [
        "Types", "Icons", "Buttons", "Pressed", "Focused", "Asleep", "Rows", "Inputs", "Lists", "ComboBoxes",
        "ComboBoxOpen", "ComboBoxAbove", "MenuWithIcons", "MenuWithRadioButtons", "MenuLong", "Dialog", "DialogAtTop",
        "KeyboardLetters", "KeyboardDigits", "Message"
    ]
    /// Of the pages that are variants of one.
    readonly property var files: ({
        Focused: "Pressed", ComboBoxOpen: "ComboBoxes", ComboBoxAbove: "ComboBoxes", MenuWithIcons: "Menu",
        MenuWithRadioButtons: "Menu", MenuLong: "Menu", DialogAtTop: "Dialog", KeyboardLetters: "Keyboard", KeyboardDigits: "Keyboard"
    })
    property int page: 0

    function step(pages: int): void {
        page = (page + pages + gallery.pages.length) % gallery.pages.length
    }

    width: Screen.width
    height: Screen.desktopAvailableHeight
    visible: true
    color: GlobalValues.defaultBackgroundColor
    title: pages[page]

    // Shortcuts, and no keys of an item: a menu or a dialog takes the focus.
    Shortcut {
        sequence: "PgDown"
        onActivated: gallery.step(1)
    }
    Shortcut {
        sequence: "PgUp"
        onActivated: gallery.step(-1)
    }

    // A mat is not seen on paper.
    Rectangle {
        anchors.fill: parent
        color: GlobalValues.defaultSolidseparatorColor
        visible: ["Dialog", "DialogAtTop", "Message"].includes(gallery.title)
    }

    Loader {
        anchors.fill: parent
        source: (gallery.files[gallery.title] ?? gallery.title) + ".qml"
        onLoaded: {
            if (item.variant !== undefined)
                item.variant = Qt.binding(() => gallery.title)
        }
    }
}
