// The two buttons at the foot of a dialog.
import QtQuick
import com.lindenreed.controls

Item {
    id: dialog_footer

    property string applyTitle
    property bool isUppercase: false

    readonly property int line: GlobalValues.minimalLineThickness

    signal apply()
    signal cancel()

    component Half: PressArea {
        id: half

        property string title
        property bool leftmost: false
        property alias styledFont: label.styledFont

        // Clear of the lines around it.
        focusElement.anchors.margins: Global.pixelsFromDesign(8)

        Accessible.name: title

        EdgeFrame {
            anchors.fill: parent
            border.width: 0
            color: GlobalValues.defaultBorderColor
            // The lower corner lies in the round corner of the dialog, and reaches below its line: no seam.
            radius: GlobalValues.defaultDialogBorderRadius - 2 * GlobalValues.dialogBorderWidth
            visible: half.pressed
            visibleParts: half.leftmost ? [0, 0, 1, 1] : [0, 1, 1, 0]
        }

        StyledText {
            id: label

            color: half.pressed ? GlobalValues.defaultBackgroundColor
                : half.enabled ? GlobalValues.defaultBorderColor : GlobalValues.defaultDisabledTextColor
            elide: Text.ElideRight
            maximumLineCount: 1
            text: dialog_footer.isUppercase ? half.title.toLocaleUpperCase() : half.title
            width: Math.min(Math.ceil(implicitWidth), half.width - 2 * GlobalValues.defaultElementBorderRadius)
            x: Math.round((half.width - width) / 2)
            y: Math.round((half.height - height) / 2)
            Accessible.ignored: true
        }
    }

    implicitHeight: line + Global.pixelsFromDesign(112)
    implicitWidth: parent ? parent.width : 0

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        color: GlobalValues.defaultBorderColor
        height: dialog_footer.line
    }

    Half {
        id: cancel_half

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.topMargin: dialog_footer.line
        leftmost: true
        styledFont: FontStyles.BodyS
        title: qsTr("@Cancel")
        width: Math.floor((parent.width - dialog_footer.line) / 2)
        onActivated: dialog_footer.cancel()
    }

    Rectangle {
        id: middle

        anchors.bottom: parent.bottom
        anchors.left: cancel_half.right
        anchors.top: parent.top
        color: GlobalValues.defaultBorderColor
        width: dialog_footer.line
    }

    Half {
        anchors.bottom: parent.bottom
        anchors.left: middle.right
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.topMargin: dialog_footer.line
        styledFont: FontStyles.BodySBold
        title: dialog_footer.applyTitle
        onActivated: dialog_footer.apply()
    }
}
