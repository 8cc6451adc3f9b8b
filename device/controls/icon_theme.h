// The device's icons: SVG files of the theme, drawn for this panel.

#pragma once

#include <QImage>
#include <QQuickImageProvider>
#include <QSize>
#include <QString>

namespace lindenreed::device {

/// An icon drawn for this panel, and the size that it has by itself.
struct Icon
{
    QImage image; ///< premultiplied, the ground transparent
    QSize naturalSize; ///< pixels
};

/// Draws the theme's icon `name` ("NAME", "NAME_inv" or the second name of an inverse). `inverted` turns that
/// round. An empty size is the natural one; with one side only, the other follows. An unknown name is
/// logged and answered by a crossed box. Any thread.
Icon drawIcon(const QString &name, bool inverted, QSize size);

/// "image://resource/NAME", and with `inverted` "image://resource_inv/NAME": the pressed look.
class IconProvider : public QQuickImageProvider
{
public:
    explicit IconProvider(bool inverted);

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    const bool m_inverted;
};

} // namespace lindenreed::device
