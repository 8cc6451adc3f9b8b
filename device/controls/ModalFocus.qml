// The keys' attention while dialogs and menus are open: it belongs to the one that was shown last. When that one goes, it
// goes back to where it was before.
import QtQuick
import "open_modals.js" as OpenModals

QtObject {
    id: modal_focus

    required property Item modal ///< the dialog or the menu
    property Item focusBefore

    /// To the modal, when what lay over it has gone.
    signal returned()

    function isInside(item: Item): bool {
        for (let at = item; at; at = at.parent) {
            if (at === modal)
                return true
        }
        return false
    }

    function isOnTop(): bool {
        return OpenModals.top() === modal_focus
    }

    /// To be called when the modal shows; nothing when it did already.
    function open(): void {
        OpenModals.add(modal_focus)
    }

    /// To be called before the modal takes the focus.
    function noteBefore(): void {
        const before = modal.Window.activeFocusItem
        if (!isInside(before))
            focusBefore = before
    }

    /// To be called when the modal is hidden.
    function close(): void {
        for (const above of OpenModals.above(modal_focus)) {
            if (isInside(above.focusBefore))
                above.focusBefore = focusBefore
        }
        if (modal.activeFocus && focusBefore && focusBefore.visible)
            focusBefore.forceActiveFocus()
        focusBefore = null
        leave()
    }

    function leave(): void {
        const wasOpen = OpenModals.remove(modal_focus)
        const top = OpenModals.top()
        if (wasOpen && top)
            top.returned()
    }

    Component.onDestruction: leave()
}
