#include "item_description.h"

#include <QAccessible>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTextDocumentFragment>

namespace lindenreed::device {

namespace {

/// The object behind "Accessible" in QML, null for an item that does not use it. It is the item's child; its
/// class is private to Qt Quick, its properties are not.
QObject *accessibleAttached(const QQuickItem *item)
{
    const QObjectList &children = item->children();
    for (QObject *child : children) {
        if (child->inherits("QQuickAccessibleAttached"))
            return child;
    }
    return nullptr;
}

bool isField(const QQuickItem *item)
{
    return item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit");
}

QString shownText(const QQuickItem *item)
{
    enum TextFormat {
        PlainText = Qt::PlainText,
        RichText = Qt::RichText,
        AutoText = Qt::AutoText,
        StyledText = 4
    };
    const QString text = item->property("text").toString();
    const int format = item->property("textFormat").toInt();
    if (format == PlainText || (format == AutoText && !Qt::mightBeRichText(text)))
        return text;
    return QTextDocumentFragment::fromHtml(text).toPlainText();
}

/// The id that the item has where it is used, else the one inside its own file.
QString qmlId(QQuickItem *item)
{
    const QQmlContext *context = qmlContext(item);
    if (!context)
        return {};
    const QString outer = context->nameForObject(item);
    if (!outer.isEmpty())
        return outer;
    // The root of a file is known inside by the context of what the file declares below it.
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        const QQmlContext *inner = qmlContext(child);
        if (!inner || inner == context)
            continue;
        const QString name = inner->nameForObject(item);
        if (!name.isEmpty())
            return name;
    }
    return {};
}

} // namespace

QAccessibleInterface *accessibleInterface(QQuickItem *item)
{
    return accessibleAttached(item) ? QAccessible::queryAccessibleInterface(item) : nullptr;
}

std::optional<TreeNode> describeItem(QQuickItem *item)
{
    const QObject *attached = accessibleAttached(item);
    if (attached && attached->property("ignored").toBool())
        return std::nullopt;
    const bool field = isField(item);
    const QString text = item->inherits("QQuickText") ? shownText(item) : QString();
    if (!attached && !field && text.isEmpty())
        return std::nullopt;

    TreeNode node;
    node.item = item;
    node.enabled = item->isEnabled();
    node.id = qmlId(item);
    node.name = attached ? attached->property("name").toString() : QString();
    if (node.name.isEmpty())
        node.name = text;

    auto role = attached ? QAccessible::Role(attached->property("role").toInt()) : QAccessible::NoRole;
    if (role == QAccessible::NoRole && field)
        role = QAccessible::EditableText;
    else if (role == QAccessible::NoRole && !text.isEmpty())
        role = QAccessible::StaticText;
    node.role = QString::fromLatin1(qAccessibleRoleString(role));

    if (field) {
        const QVariant displayed = item->property("displayText"); // hides what a password field hides
        node.value = displayed.isValid() ? displayed.toString() : item->property("text").toString();
    }
    if (QAccessibleInterface *accessible = accessibleInterface(item)) {
        if (QAccessibleValueInterface *value = accessible->valueInterface())
            node.value = value->currentValue().toString();
        const QAccessible::State state = accessible->state();
        if (state.checkable)
            node.checked = state.checked != 0;
        node.focused = attached && attached->property("focused").toBool();
    }
    return node;
}

} // namespace lindenreed::device
