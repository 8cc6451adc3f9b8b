// What a window draws into.

#pragma once

#include <QImage>
#include <qpa/qplatformbackingstore.h>

#include <memory>

namespace lindenreed::device {

/// One picture in the panel's own format, so that nothing is converted on the way to the panel.
class BackingStore final : public QPlatformBackingStore
{
public:
    BackingStore(QWindow *window, QImage::Format format);

    QPaintDevice *paintDevice() override { return m_picture.get(); }
    void flush(QWindow *window, const QRegion &region, const QPoint &offset) override;
    void resize(const QSize &size, const QRegion &staticContents) override;
    QImage toImage() const override { return *m_picture; }

private:
    QImage::Format m_format;
    std::shared_ptr<QImage> m_picture; ///< shared with the window on the panel: either may be gone first
};

} // namespace lindenreed::device
