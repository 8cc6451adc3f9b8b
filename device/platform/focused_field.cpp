#include "focused_field.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QQuickItem>

namespace lindenreed::device {

namespace {

QVariant askField(Qt::InputMethodQuery question)
{
    QObject *object = QGuiApplication::focusObject();
    if (!object)
        return {};
    QInputMethodQueryEvent query(question);
    QCoreApplication::sendEvent(object, &query);
    return query.value(question);
}

} // namespace

bool fieldHasFocus()
{
    const auto *item = qobject_cast<QQuickItem *>(QGuiApplication::focusObject());
    return (!item || item->isVisible()) && askField(Qt::ImEnabled).toBool();
}

Qt::InputMethodHints hintsOfField()
{
    return Qt::InputMethodHints(askField(Qt::ImHints).toInt());
}

void typeIntoField(const QString &text)
{
    if (!fieldHasFocus())
        return;
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
}

} // namespace lindenreed::device
