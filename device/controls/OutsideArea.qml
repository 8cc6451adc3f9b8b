// Everything outside a menu or a dialog: takes each touch away from what lies behind, and a tap closes.
import QtQuick

MouseArea {
    id: outside_area

    signal close()

    anchors.fill: parent

    Accessible.name: qsTr("@Close")
    Accessible.role: Accessible.Button
    Accessible.onPressAction: close()

    onClicked: close()
    onWheel: wheel => wheel.accepted = true
}
