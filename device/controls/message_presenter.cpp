#include "message_presenter.h"

#include <QQuickItem>

namespace lindenreed::device {

MessagePresenter *MessagePresenter::of(QQuickItem *loader)
{
    if (auto *presenter = loader->findChild<MessagePresenter *>(QString(), Qt::FindDirectChildrenOnly))
        return presenter;
    return new MessagePresenter(loader);
}

MessagePresenter::MessagePresenter(QQuickItem *loader)
    : QObject(loader)
    , m_loader(loader)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &MessagePresenter::hide);
    connect(loader, &QQuickItem::visibleChanged, this, &MessagePresenter::visibilityChanged);
    // The class of QML's loader is not public; an item that is none simply has no such signal.
    if (loader->metaObject()->indexOfSignal("loaded()") >= 0)
        connect(loader, SIGNAL(loaded()), this, SLOT(fillItem()));
}

void MessagePresenter::show(const QString &message, const QString &icon, int timeoutMs)
{
    m_message = message;
    m_icon = icon;
    fillItem(); // before it shows, so that it is drawn once
    m_loader->setVisible(true);
    if (timeoutMs > 0)
        m_timer.start(timeoutMs);
    else
        m_timer.stop();
}

void MessagePresenter::hide()
{
    m_timer.stop();
    m_loader->setVisible(false);
}

void MessagePresenter::fillItem()
{
    if (auto *item = m_loader->property("item").value<QObject *>()) {
        item->setProperty("text", m_message);
        item->setProperty("icon", m_icon);
    }
}

void MessagePresenter::visibilityChanged()
{
    // However the loader was hidden: the time left must not cut the next message short. It goes on while it
    // is merely a parent that is hidden, for then the message comes back with it.
    const QQuickItem *parent = m_loader->parentItem();
    if (!m_loader->isVisible() && (!parent || parent->isVisible()))
        m_timer.stop();
}

} // namespace lindenreed::device
