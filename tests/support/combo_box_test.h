// What tests of the combo box start from: one of them, on a screen of its own.

#pragma once

#include "accessible_items.h"
#include "controls_scene.h"

using namespace Qt::StringLiterals;

inline const QByteArray units = "append({uid_: 0, text_: 'Seconds'}); append({uid_: 1, text_: 'Minutes'});"
                                "append({uid_: 2, text_: 'Hours'})";

class ComboBoxTest : public QObject
{
protected:
    void make(const QByteArray &properties, const QByteArray &rows = {}, const QByteArray &items = {});
    QQuickItem *box() const { return m_scene->item(u"box"_s); }
    QQuickItem *row(const QString &text, QAccessible::Role role = QAccessible::RadioButton) const;
    QQuickItem *menu() const;
    bool isOpened() const { return box()->property("isOpened").toBool(); }
    QString name() const { return accessibleName(box()); }
    QVariantList chosen() const { return m_scene->root()->property("chosen").toList(); }
    void open();
    void click(QQuickItem *item);

    std::unique_ptr<QmlScene> m_scene;
};

inline void ComboBoxTest::make(const QByteArray &properties, const QByteArray &rows, const QByteArray &items)
{
    m_scene = std::make_unique<QmlScene>(
        QByteArray(R"(import QtQuick
import com.lindenreed.controls 1.0
Item {
    id: screen
    property var chosen: []
    property int unit: 0
    property alias rows: rows
    ListModel { id: rows; Component.onCompleted: { @ROWS@ } }
    ComboBox {
        id: box
        objectName: 'box'
        @PLACE@
        menuItems: rows
        @STATE@
        onChoosed: uid => screen.chosen = screen.chosen.concat([uid, selectedUid, isOpened])
        @PROPERTIES@
    }
    @ITEMS@
})")
            .replace("@ROWS@", rows.isEmpty() ? units : rows)
            .replace("@PLACE@", properties.contains("y: ") ? "" : "x: 60; y: 100")
            .replace("@STATE@", properties.contains("state: ") ? "" : "state: 'RadioTextButton'")
            .replace("@PROPERTIES@", properties)
            .replace("@ITEMS@", items));
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

inline QQuickItem *ComboBoxTest::row(const QString &text, QAccessible::Role role) const
{
    return findAccessible(m_scene->window().contentItem(), role, text);
}

inline QQuickItem *ComboBoxTest::menu() const
{
    return findAccessible(m_scene->window().contentItem(), QAccessible::PopupMenu);
}

inline void ComboBoxTest::click(QQuickItem *item)
{
    QVERIFY(item);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, sceneRectangle(item).center());
}

inline void ComboBoxTest::open()
{
    click(box());
    QVERIFY(isOpened());
    QVERIFY(menu());
    m_scene->window().grabWindow(); // lays the rows out
}
