// What the cells of folders and storages consist of. Needs what explorer_fixture.h needs.

#pragma once

#include "explorer_fixture.h"

namespace explorer_cells {

/// The delegates of folders and storages by the order of a cell's six.
enum Delegate { Folder = 1, Internal = 3, Card, Usb };

inline QQuickItem *delegate(const RunningExplorer &explorer, int row, Delegate kind)
{
    return explorer.cell(row)->childItems().at(kind);
}

/// The visible texts below an item, in the order of children.
inline QList<QQuickItem *> texts(QQuickItem *item)
{
    QList<QQuickItem *> found;
    if (item->isVisible() && item->metaObject()->indexOfProperty("styledFont") >= 0
        && !item->property("text").toString().isEmpty())
        found.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        found.append(texts(child));
    return found;
}

inline QQuickItem *icon(QQuickItem *delegate)
{
    return RunningExplorer::below(delegate, "fillMode");
}

/// The dotted line of a delegate that runs this way.
inline QQuickItem *line(QQuickItem *delegate, bool vertical)
{
    return RunningExplorer::below(delegate, "vertical", vertical);
}

inline bool hasStyle(QQuickItem *text, const QString &style)
{
    return RunningExplorer::valueOf(text, QStringLiteral("styledFont === FontStyles.") + style).toBool();
}

inline QString text(const char *key)
{
    return QString::fromUtf8(GetLangText(key));
}

/// What the model says in a row.
inline QString role(const RunningExplorer &explorer, int row, int role)
{
    return explorer.folders()->data(explorer.folders()->index(row), role).toString();
}

} // namespace explorer_cells
