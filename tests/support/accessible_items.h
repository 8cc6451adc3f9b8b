// Items of a QML scene as assistive input sees them.

#pragma once

#include <QAccessible>
#include <QQuickItem>

/// Null where the item says nothing.
inline QAccessibleInterface *accessible(QQuickItem *item)
{
    return item ? QAccessible::queryAccessibleInterface(item) : nullptr;
}

inline QString accessibleName(QQuickItem *item)
{
    QAccessibleInterface *interface = accessible(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

/// The first visible item below `root`, in the order of children, with this role and, unless it is null, this
/// name; null where there is none.
inline QQuickItem *findAccessible(QQuickItem *root, QAccessible::Role role, const QString &name = {})
{
    if (!root->isVisible())
        return nullptr;
    QAccessibleInterface *interface = accessible(root);
    if (interface && interface->role() == role
        && (name.isNull() || interface->text(QAccessible::Name) == name))
        return root;
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = findAccessible(child, role, name))
            return found;
    }
    return nullptr;
}

/// False where the item does not know the action, which is one of QAccessibleActionInterface's names.
inline bool actByAccessibility(QQuickItem *item, const QString &action)
{
    QAccessibleInterface *interface = accessible(item);
    QAccessibleActionInterface *actions = interface ? interface->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(action))
        return false;
    actions->doAction(action);
    return true;
}

inline bool pressByAccessibility(QQuickItem *item)
{
    return actByAccessibility(item, QAccessibleActionInterface::pressAction());
}

/// Where `item` is in its window.
inline QRect sceneRectangle(const QQuickItem *item)
{
    return QRectF(item->mapToScene(QPointF()), item->size()).toRect();
}
