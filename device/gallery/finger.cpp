#include "finger.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace {

void send(QQuickWindow *window, QEvent::Type type, const QPointF &point, Qt::MouseButton button,
          Qt::MouseButtons buttons)
{
    QMouseEvent event(type, point, window->mapToGlobal(point), button, buttons, {});
    QCoreApplication::sendEvent(window, &event);
}

} // namespace

QUrl Finger::pictureOf(QQuickItem *item) const
{
    if (!item || !item->window())
        return {};
    const QRectF rectangle = item->mapRectToScene(QRectF(QPointF(), item->size()));
    const QImage picture = item->window()->grabWindow().copy(rectangle.toAlignedRect());
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return QUrl(u"data:image/png;base64,"_s + QString::fromLatin1(bytes.toBase64()));
}

QUrl Finger::pictureOfHeld(QQuickItem *item, const QPointF &point) const
{
    QQuickWindow *window = item ? item->window() : nullptr;
    if (!window)
        return {};
    send(window, QEvent::MouseButtonPress, item->mapToScene(point), Qt::LeftButton, Qt::LeftButton);
    const QUrl picture = pictureOf(item);
    const QPointF beside(-1000, -1000);
    send(window, QEvent::MouseMove, beside, Qt::NoButton, Qt::LeftButton);
    send(window, QEvent::MouseButtonRelease, beside, Qt::LeftButton, Qt::NoButton);
    return picture;
}
