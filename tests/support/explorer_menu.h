// The menu that a picture of an explorer opens.

#pragma once

#include "accessible_items.h"
#include "explorer_fixture.h"

#include <functional>

namespace explorer_menu {

/// The menu that is open; null where none is.
inline QQuickItem *shown(const RunningExplorer &explorer)
{
    const QList<QQuickItem *> loaders = explorer.window->contentItem()->childItems();
    for (QQuickItem *loader : loaders) {
        auto *item = loader->property("item").value<QQuickItem *>();
        if (item && item->isVisible() && item->metaObject()->indexOfProperty("radioBtnDontCheckChecked") >= 0)
            return item;
    }
    return nullptr;
}

inline QString text(const char *key)
{
    return QString::fromUtf8(GetLangText(key));
}

/// "text icon" of each row of the open menu.
inline QStringList rows(const RunningExplorer &explorer)
{
    QStringList found;
    const std::function<void(QQuickItem *)> collect = [&](QQuickItem *item) {
        if (item->metaObject()->indexOfProperty("hasRadioSign") >= 0)
            found.append(item->property("text").toString() + u' ' + item->property("icon").toString());
        const QList<QQuickItem *> children = item->childItems();
        for (QQuickItem *child : children)
            collect(child);
    };
    collect(shown(explorer));
    return found;
}

/// A finger that stays until the menu of this cell opens.
inline void hold(const RunningExplorer &explorer, int row)
{
    const QPoint point = RunningExplorer::centreOf(explorer.cell(row));
    QTest::mousePress(explorer.window, Qt::LeftButton, {}, point);
    QTRY_VERIFY(shown(explorer));
    QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, point);
}

/// Presses the row with this text key of the open menu.
inline void choose(const RunningExplorer &explorer, const char *key)
{
    QQuickItem *const row = findAccessible(shown(explorer), QAccessible::MenuItem, text(key));
    QVERIFY(row);
    QVERIFY(pressByAccessibility(row)); // wherever the menu stands by now
    QTRY_VERIFY(!shown(explorer));
}

} // namespace explorer_menu
