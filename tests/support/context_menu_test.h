// What tests of context menus start from: a menu that is opened the way screens open it.

#pragma once

#include "accessible_items.h"
#include "controls_scene.h"

using namespace Qt::StringLiterals;

inline const QByteArray threeRows = "append({uid_: 0, text_: 'Rename', image_: 'edit_word'});"
                                    "append({uid_: 1, text_: 'Add photos', image_: 'plus_add'});"
                                    "append({uid_: 2, text_: 'Delete', image_: 'trash'})";
inline const QByteArray manyRows = "for (let i = 0; i < 30; ++i) append({uid_: i, text_: 'Row ' + i})";

class ContextMenuTest : public QObject
{
protected:
    /// A screen with one row at `area` that a tap opens the menu of.
    void make(const QByteArray &delegate, const QByteArray &rows, const QByteArray &title = {},
              const QRect &area = {40, 100, 500, 60}, const QByteArray &properties = {});
    void open();
    QQuickItem *row(const QString &text, QAccessible::Role role = QAccessible::MenuItem) const;
    QQuickItem *panel() const; ///< the menu's frame
    QVariantList chosen() const { return m_scene->root()->property("chosen").toList(); }
    int closed() const { return m_scene->root()->property("closed").toInt(); }
    bool isOpen() const { return m_scene->item(u"loader"_s)->isVisible(); }
    void click(const QPoint &point);

    std::unique_ptr<QmlScene> m_scene;
};

inline void ContextMenuTest::make(const QByteArray &delegate, const QByteArray &rows, const QByteArray &title,
                                  const QRect &area, const QByteArray &properties)
{
    m_scene = std::make_unique<QmlScene>(QByteArray(R"(import QtQuick
import com.lindenreed.controls 1.0
Item {
    id: screen
    property var chosen: []
    property int closed: 0
    property int touchedBehind: 0
    property alias rows: rows
    function open() {
        const corner = mapToGlobal(@X@, @Y@)
        Global.openContextMenuLoader(loader, rows, "@DELEGATE@", "@TITLE@", Qt.rect(corner.x, corner.y, @W@, @H@))
    }
    ListModel { id: rows; Component.onCompleted: { @ROWS@ } }
    MouseArea { anchors.fill: parent; onClicked: ++screen.touchedBehind }
    BitmapButton { objectName: 'behind'; focus: true; onAction: screen.open() }
    LoaderNoSleep {
        id: loader
        objectName: 'loader'
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible && status === Loader.Null) sourceComponent = component
        onLoaded: parent = Window.window.contentItem
    }
    Component {
        id: component
        ContextMenu {
            @PROPERTIES@
            onChoosed: uid => { screen.chosen = screen.chosen.concat([uid]); loader.visible = false }
            onClose: { ++screen.closed; loader.visible = false }
        }
    }
})")
                                             .replace("@DELEGATE@", delegate)
                                             .replace("@TITLE@", title)
                                             .replace("@X@", QByteArray::number(area.x()))
                                             .replace("@Y@", QByteArray::number(area.y()))
                                             .replace("@W@", QByteArray::number(area.width()))
                                             .replace("@H@", QByteArray::number(area.height()))
                                             .replace("@ROWS@", rows)
                                             .replace("@PROPERTIES@", properties));
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

inline void ContextMenuTest::open()
{
    QVERIFY(QMetaObject::invokeMethod(m_scene->root(), "open"));
    QVERIFY(isOpen());
    QVERIFY(panel());
    m_scene->window().grabWindow(); // lays the rows out
}

inline QQuickItem *ContextMenuTest::row(const QString &text, QAccessible::Role role) const
{
    return findAccessible(m_scene->window().contentItem(), role, text);
}

inline QQuickItem *ContextMenuTest::panel() const
{
    return findAccessible(m_scene->item(u"loader"_s), QAccessible::PopupMenu);
}

inline void ContextMenuTest::click(const QPoint &point)
{
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, point);
}
