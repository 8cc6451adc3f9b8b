// What the user can do with a running show, over the dimmed picture.
import QtQuick 2.12
import com.lindenreed.controls 1.0

Item {
    id: wrapper

    signal close()
    signal choosed(string view)

    /// On a device without touch: the keys begin at the first entry each time.
    function focusFirst() {
        if (visible && entries.count > 0)
            entries.itemAt(0).forceActiveFocus()
    }

    function moveFocus(from, by) {
        const next = entries.itemAt(from + by)
        if (next)
            next.forceActiveFocus()
    }

    onVisibleChanged: focusFirst()

    Keys.onBackPressed: close()

    ListModel {
        id: menu_model

        ListElement {
            uid_: 0
            image_: "slideshow_stop"
            pressedImage_: "slideshow_stop_inv"
            view_: "stop_slideshow"
            text_: qsTr("@StopSlideshow")
        }
        ListElement {
            uid_: 1
            image_: "slideshow_settings"
            pressedImage_: "slideshow_settings_inv"
            view_: "settings_slideshow"
            text_: qsTr("@SlideshowSettings")
        }
        ListElement {
            uid_: 2
            image_: "slideshow_brightness"
            pressedImage_: "slideshow_brightness_inv"
            view_: "frontlight"
            text_: qsTr("@FrontLight")
        }
    }

    MouseArea {
        anchors.fill: parent
        onClicked: wrapper.close()
    }

    Column {
        anchors.centerIn: parent
        clip: true

        Repeater {
            id: entries

            model: menu_model

            Item {
                id: entry

                required property int index
                required property string image_
                required property string pressedImage_
                required property string view_
                required property string text_

                height: Global.dp((160 + 64) * 0.53)
                implicitWidth: btn.width + text_metrics.width + 2 * GlobalValues.defaultElementBorderRadius
                    + Global.dp(40 * 0.53)
                clip: true

                Accessible.focusable: true
                Accessible.name: text_
                Accessible.role: Accessible.Button
                Accessible.onPressAction: wrapper.choosed(view_)

                Keys.onDownPressed: wrapper.moveFocus(index, 1)
                Keys.onEnterPressed: wrapper.choosed(view_)
                Keys.onReturnPressed: wrapper.choosed(view_)
                Keys.onUpPressed: wrapper.moveFocus(index, -1)

                state: "Normal"
                states: [
                    State {
                        name: "Normal"
                    },
                    State {
                        name: "Pressed"

                        PropertyChanges {
                            target: label
                            font.bold: true
                        }
                        PropertyChanges {
                            target: btn
                            source: Global.defaultNormalImagesPrefix + "/" + entry.pressedImage_
                        }
                    }
                ]

                Image {
                    id: btn

                    anchors {
                        left: parent.left
                        leftMargin: GlobalValues.defaultElementBorderRadius
                        verticalCenter: parent.verticalCenter
                    }
                    source: Global.defaultNormalImagesPrefix + "/" + entry.image_
                    Accessible.ignored: true
                }

                TextMetrics {
                    id: text_metrics

                    elide: Text.ElideRight
                    elideWidth: wrapper.width - (btn.width + GlobalValues.defaultElementBorderRadius * 2)
                    font: label.font
                    text: entry.text_
                }

                StyledText {
                    id: label

                    anchors {
                        left: btn.right
                        leftMargin: Global.dp(40 * 0.53)
                        right: parent.right
                        rightMargin: GlobalValues.defaultElementBorderRadius
                        verticalCenter: parent.verticalCenter
                    }
                    color: "white"
                    lineHeightMode: Text.FixedHeight
                    styledFont: FontStyles.Heading4
                    text: text_metrics.elidedText
                    Accessible.ignored: true
                }

                // White, where other controls have black: the ground is dark.
                Rectangle {
                    anchors.fill: parent
                    border.color: "white"
                    border.width: GlobalValues.defaultFocusedElementBorderThickness
                    color: "transparent"
                    radius: GlobalValues.listElementHoverFrameBorderRadius
                    visible: entry.activeFocus && !DeviceInfoProvider.isTouchDevice
                }

                MouseArea {
                    anchors.fill: parent
                    onCanceled: entry.state = "Normal"
                    onClicked: wrapper.choosed(entry.view_)
                    onPressed: entry.state = "Pressed"
                    onReleased: entry.state = "Normal"
                }
            }
        }
    }
}
