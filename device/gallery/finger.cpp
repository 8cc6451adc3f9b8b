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

QUrl Finger::pictureOfHeld(QQuickItem *item, const QPointF &point) const
{
    QQuickWindow *window = item ? item->window() : nullptr;
    if (!window)
        return {};
    const QPointF place = item->mapToScene(point);
    const QRectF rectangle = item->mapRectToScene(QRectF(QPointF(), item->size()));
    send(window, QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton);
    const QImage picture = window->grabWindow().copy(rectangle.toAlignedRect());
    const QPointF beside(-1000, -1000);
    send(window, QEvent::MouseMove, beside, Qt::NoButton, Qt::LeftButton);
    send(window, QEvent::MouseButtonRelease, beside, Qt::LeftButton, Qt::NoButton);

    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return QUrl(u"data:image/png;base64,"_s + QString::fromLatin1(bytes.toBase64()));
}
