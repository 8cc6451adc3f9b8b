// What tests of dialogs start from: one that is shown the way screens show it.

#pragma once

#include "accessible_items.h"
#include "controls_scene.h"

#include <QGuiApplication>
#include <QInputMethod>

using namespace Qt::StringLiterals;

class DialogTest : public QObject
{
protected:
    static constexpr int head = 79; ///< 112 of the design

    void make(const QByteArray &properties = {}, const QByteArray &content = {}, QSize size = {600, 800});
    /// Ends the scene; what the engine has warned of.
    QStringList end()
    {
        QGuiApplication::inputMethod()->hide();
        return endScene(m_scene);
    }
    void show(bool visible = true) { m_scene->item(u"loader"_s)->setVisible(visible); }
    QQuickItem *frame() const { return findAccessible(m_scene->item(u"dialog"_s), QAccessible::Dialog); }
    QRect placeOf(const QString &name) const { return sceneRectangle(m_scene->item(name)); }
    QStringList log() const { return m_scene->root()->property("log").toStringList(); }
    void click(const QPoint &point) { QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, point); }
    QQuickItem *focused() const { return m_scene->window().activeFocusItem(); }

    std::unique_ptr<QmlScene> m_scene;
};

inline void DialogTest::make(const QByteArray &properties, const QByteArray &content, QSize size)
{
    m_scene = std::make_unique<QmlScene>(
        QByteArray(R"(import QtQuick
import com.lindenreed.controls 1.0
Item {
    id: screen
    property var log: []
    function note(text) { log = log.concat([text]) }
    ListModel {
        id: units
        ListElement { uid_: 0; text_: 'Seconds' }
        ListElement { uid_: 1; text_: 'Minutes' }
    }
    MouseArea { anchors.fill: parent; onClicked: screen.note('behind') }
    TextButton { objectName: 'behind'; text: 'Behind'; onAction: screen.note('behind') }
    LoaderNoSleep {
        id: loader
        objectName: 'loader'
        visible: false
        sourceComponent: component
        onVisibleChanged: if (visible) parent = Window.window.contentItem
    }
    Component {
        id: component
        DialogContainer {
            objectName: 'dialog'
            title: 'Interval'
            onClose: { screen.note('close'); loader.visible = false }
            @PROPERTIES@
            @CONTENT@
        }
    }
})")
            .replace("title: 'Interval'", properties.contains("title: ") ? "" : "title: 'Interval'")
            .replace("@PROPERTIES@", properties)
            .replace("@CONTENT@",
                     content.isEmpty() ? "Item { objectName: 'body'; width: "
                                         "parent.width; height: 200 }"
                                       : content),
        size);
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}
