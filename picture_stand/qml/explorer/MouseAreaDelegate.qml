// Takes the taps on a picture, and frames it while it is pressed.
import QtQuick 2.12
import com.lindenreed.controls 1.0
import com.lindenreed.picturestand 1.0

Item {
    id: wrapper

    property bool hovered: false

    signal clicked()
    signal pressAndHold()

    anchors.fill: parent

    component Edge: Rectangle {
        color: "black"
        visible: wrapper.hovered
    }

    MouseArea {
        anchors.fill: parent
        onCanceled: wrapper.hovered = false
        onClicked: wrapper.clicked()
        onEntered: wrapper.hovered = true
        onExited: wrapper.hovered = false
        onPressAndHold: {
            wrapper.hovered = true
            wrapper.pressAndHold()
        }
        onPressed: wrapper.hovered = true
        onReleased: wrapper.hovered = false
    }

    // Four sides and no rectangle with a border: the picture between them is not painted over.
    Edge {
        anchors {
            top: parent.top
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.defaultFocusedElementBorderThickness
    }
    Edge {
        anchors {
            bottom: parent.bottom
            left: parent.left
            right: parent.right
        }
        height: GlobalValues.defaultFocusedElementBorderThickness
    }
    Edge {
        anchors {
            top: parent.top
            bottom: parent.bottom
            left: parent.left
        }
        width: GlobalValues.defaultFocusedElementBorderThickness
    }
    Edge {
        anchors {
            top: parent.top
            bottom: parent.bottom
            right: parent.right
        }
        width: GlobalValues.defaultFocusedElementBorderThickness
    }
}
