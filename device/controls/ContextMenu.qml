// The menu of an item, opened by Global.openContextMenuLoader. A tap outside, or the key that leads back, is `close`;
// whoever opened it hides it, after a choice as well.
import QtQuick
import com.lindenreed.controls

MenuOverlay {
    id: context_menu

    property bool radioBtnDontCheckChecked: false ///< the row that is checked can be chosen again

    property rect globalArea

    /// Takes what it shows; `newArea` in global coordinates.
    function present(newModel, newDelegateName, newTitle, newArea) {
        model = newModel
        delegateName = newDelegateName
        title = newTitle
        // The title of a choice is what is chosen; of any other menu it is a name, which may be a row's by chance.
        checkedRow = delegateName === "RadioButton" ? rowOfText(title) : -1
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
        focus_keeper.open()
        focus_keeper.noteBefore()
        forceActiveFocus()
    }

    anchors.fill: parent
    checkedCanBeChosen: radioBtnDontCheckChecked

    onHeightChanged: findArea()
    onVisibleChanged: visible ? takeFocus() : focus_keeper.close()
    onWidthChanged: findArea()

    ModalFocus {
        id: focus_keeper

        modal: context_menu
        onReturned: context_menu.forceActiveFocus()
    }
}
