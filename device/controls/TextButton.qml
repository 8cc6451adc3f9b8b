// A button that is a word in a frame.
import QtQuick
import com.lindenreed.controls

PressArea {
    id: text_button

    property string text

    readonly property color ink: enabled ? GlobalValues.defaultBorderColor : GlobalValues.defaultDisabledTextColor

    signal action()

    implicitHeight: GlobalValues.defaultTextButtonHeight
    implicitWidth: Math.max(Global.pixelsFromDesign(320),
                            Math.ceil(label.implicitWidth) + 2 * Global.pixelsFromDesign(48))

    Accessible.name: text

    onActivated: action()

    Rectangle {
        anchors.fill: parent
        border.color: text_button.ink
        border.width: GlobalValues.minimalLineThickness
        color: text_button.pressed ? text_button.ink : GlobalValues.defaultBackgroundColor
        radius: GlobalValues.defaultElementBorderRadius
    }

    StyledText {
        id: label

        anchors.verticalCenter: parent.verticalCenter
        color: text_button.pressed ? GlobalValues.defaultBackgroundColor : text_button.ink
        elide: Text.ElideRight
        maximumLineCount: 1
        styledFont: FontStyles.Heading5
        text: text_button.text
        // A button that is made narrow gives up its padding before its letters.
        width: Math.min(Math.ceil(implicitWidth), text_button.width - 2 * GlobalValues.defaultElementBorderRadius)
        x: Math.round((text_button.width - width) / 2)
        Accessible.ignored: true
    }
}
