#include "backing_store.h"

#include "platform_window.h"

#include <QPainter>
#include <QWindow>

namespace lindenreed::device {

BackingStore::BackingStore(QWindow *window, QImage::Format format)
    : QPlatformBackingStore(window)
    , m_format(format)
    , m_picture(std::make_shared<QImage>())
{
}

void BackingStore::flush(QWindow *window, const QRegion &region, const QPoint &offset)
{
    Q_UNUSED(window); // a child without a store of its own draws into ours, at the offset
    if (auto *platformWindow = static_cast<PlatformWindow *>(this->window()->handle()))
        platformWindow->showDrawing(m_picture, region.translated(offset));
}

void BackingStore::resize(const QSize &size, const QRegion &staticContents)
{
    if (m_picture->size() == size)
        return;
    QImage resized(size, m_format);
    resized.fill(Qt::white);
    if (!staticContents.isEmpty() && !m_picture->isNull()) {
        QPainter painter(&resized);
        painter.setClipRegion(staticContents);
        painter.drawImage(0, 0, *m_picture);
    }
    *m_picture = resized;
}

} // namespace lindenreed::device
