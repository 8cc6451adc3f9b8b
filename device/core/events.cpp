#include "events.h"

#include <QThread>

#include <utility>

namespace lindenreed::device {

void Events::setHandler(Handler handler)
{
    Q_ASSERT(QThread::currentThread() == thread());
    m_handler = handler ? std::make_shared<const Handler>(std::move(handler)) : nullptr;
}

int Events::send(int type, int par1, int par2)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (type == event::foreground || type == event::background)
        setInForeground(type == event::foreground);
    // The handler may replace itself while it runs: it lives until its call has returned.
    const std::shared_ptr<const Handler> handler = m_handler;
    return handler ? (*handler)(type, par1, par2) : 0;
}

void Events::post(int type, int par1, int par2)
{
    QMetaObject::invokeMethod(
        this, [this, type, par1, par2] { send(type, par1, par2); }, Qt::QueuedConnection);
}

void Events::reset()
{
    setHandler({});
    setInForeground(true);
}

void Events::setInForeground(bool inForeground)
{
    if (std::exchange(m_inForeground, inForeground) != inForeground)
        emit inForegroundChanged();
}

} // namespace lindenreed::device
