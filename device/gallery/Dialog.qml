// A dialog with a question and its footer, in the middle or near the top.
import QtQuick 2.12
import com.lindenreed.controls 1.0

DialogContainer {
    property string variant

    anchors.fill: parent
    state: variant === "DialogAtTop" ? "VerticalTop" : ""
    title: "Delete"
    dialogWidth: Math.min(GlobalValues.confirmationDialogWidth, width - 2 * GlobalValues.separatorSideOffset)

    Item {
        width: parent.width
        height: question.height + 2 * GlobalValues.dialogSidePadding

        StyledText {
            id: question

            x: GlobalValues.dialogSidePadding
            y: x
            width: parent.width - 2 * x
            wrapMode: Text.Wrap
            styledFont: FontStyles.BodyL
            text: "Delete “Garden in spring”? Its pictures stay where they are."
        }
    }
    DialogFooter {
        width: parent.width
        applyTitle: "Delete"
        isUppercase: true
    }
}
