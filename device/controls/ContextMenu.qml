// The menu of an item, opened by Global.openContextMenuLoader. A tap outside, or the key that leads back, is `close`;
// whoever opened it hides it, after a choice as well.
import QtQuick
import com.lindenreed.controls

MenuOverlay {
    id: context_menu

    property bool radioBtnDontCheckChecked: false ///< the row that is checked can be chosen again

    property rect globalArea
    property Item focusBefore ///< has the keys' attention again when the menu goes

    /// Takes what it shows; `newArea` in global coordinates.
    function present(newModel, newDelegateName, newTitle, newArea) {
        model = newModel
        delegateName = newDelegateName
        title = newTitle
        checkedRow = rowOfText(title)
        globalArea = newArea
        toStart()
        findArea()
        if (visible)
            takeFocus()
    }

    function findArea(): void {
        const corner = mapFromGlobal(globalArea.x, globalArea.y)
        area = Qt.rect(corner.x, corner.y, globalArea.width, globalArea.height)
    }

    function takeFocus(): void {
        if (!activeFocus)
            focusBefore = Window.activeFocusItem
        forceActiveFocus()
    }

    function giveFocusBack(): void {
        if (activeFocus && focusBefore && focusBefore.visible)
            focusBefore.forceActiveFocus()
        focusBefore = null
    }

    anchors.fill: parent
    checkedCanBeChosen: radioBtnDontCheckChecked

    onHeightChanged: findArea()
    onVisibleChanged: visible ? takeFocus() : giveFocusBack()
    onWidthChanged: findArea()
}
