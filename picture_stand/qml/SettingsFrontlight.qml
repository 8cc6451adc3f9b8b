// The device's light, over the bottom of the show. What is set here acts at once.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Rectangle {
    id: wrapper

    property string title

    signal changeView(string view)
    signal back()

    /// On a device without touch the keys begin at the first row. They stay in the panel where no row can be reached.
    function focusFirst() {
        if (!visible)
            return
        wrapper.forceActiveFocus()
        const first = frontlight.nextItemInFocusChain()
        for (let item = first; item; item = item.parent) {
            if (item === frontlight)
                first.forceActiveFocus()
        }
    }

    implicitHeight: settings_content.implicitHeight

    onVisibleChanged: {
        frontlight.refresh()
        focusFirst()
    }

    // Keeps touches away from the picture.
    MouseArea {
        anchors.fill: parent
    }

    Rectangle {
        id: settings_content

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        implicitHeight: frontlight.implicitHeight + (footer.visible ? footer.implicitHeight : 0)
        color: "white"

        // The edge against a white picture.
        Rectangle {
            anchors {
                top: parent.top
                left: parent.left
                right: parent.right
            }
            height: GlobalValues.minimalLineThickness
            color: GlobalValues.defaultBorderColor
        }

        Frontlight {
            id: frontlight

            anchors {
                left: parent.left
                leftMargin: GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius
                right: parent.right
                rightMargin: GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius
                bottom: footer.visible ? footer.top : parent.bottom
            }
            bottomPadding: Global.dp(39 * 0.53)
        }

        Rectangle {
            id: footer

            anchors {
                left: parent.left
                right: parent.right
                bottom: parent.bottom
            }
            implicitHeight: note.height + 2 * Global.dp(32 * 0.53)
            color: "#C3C3C3"
            visible: frontlight.frontlight_enabled

            Item {
                anchors {
                    fill: parent
                    topMargin: Global.dp(32 * 0.53)
                    bottomMargin: Global.dp(32 * 0.53)
                    leftMargin: Global.dp(88.5 * 0.53)
                    rightMargin: Global.dp(44 * 0.53)
                }

                Image {
                    id: sign

                    anchors {
                        left: parent.left
                        verticalCenter: parent.verticalCenter
                    }
                    source: "image://resource/battery_warning"
                    Accessible.ignored: true
                }

                StyledText {
                    id: note

                    anchors {
                        left: sign.right
                        leftMargin: Global.pixelsFromDesign(24)
                        right: parent.right
                        verticalCenter: parent.verticalCenter
                    }
                    elide: Text.ElideRight
                    maximumLineCount: 2
                    styledFont: FontStyles.BodyS
                    text: qsTr("@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining")
                    wrapMode: Text.WordWrap
                }
            }
        }
    }
}
