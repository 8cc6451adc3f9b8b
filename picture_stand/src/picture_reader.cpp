#include "picture_reader.h"

#include "png_texts.h"
#include "regular_file.h"
#include "svg_reader.h"

#include <boardconf.h>
#include <slateview.h>

#include <QImageReader>

#include <new>
#include <utility>

namespace lindenreed::picture_stand {

namespace {

// Where a reader reduces while it decodes, Qt's limit does not count what is in the file, and empty rows are
// packed so well that a small file would keep the device busy for minutes. The largest photographs of
// telephones have 108 million.
constexpr qint64 mostPixels = 120'000'000;

QImage readPixels(QImageReader &reader, QSize screen)
{
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > mostPixels)
        return {};
    // A thread keeps one row or column: readers take a size without either as none asked for.
    if (size.width() >= 0 && size.height() >= 0
        && (size.width() > screen.width() || size.height() > screen.height()))
        reader.setScaledSize(size.scaled(screen, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return reader.read();
}

std::optional<QImage> decoded(const QString &path)
{
    QImage picture;
    PictureFile file(path);
    if (openRegularFile(file) && hasBearableTexts(file)) {
        const QSize screen(ScreenWidth(), ScreenHeight());
        QImageReader reader(&file);
        picture = isSvg(reader) ? readSvg(file, SvgFit::Within, screen) : readPixels(reader, screen);
    }
    if (file.hasGone(picture))
        return std::nullopt;
    picture = std::move(picture).convertToFormat(device_display_colormask() == 0 ? QImage::Format_Grayscale8
                                                                                 : QImage::Format_RGB888);
    if (SvGetScreenModeInversion())
        picture.invertPixels(QImage::InvertRgb);
    return picture;
}

} // namespace

std::optional<QImage> readImage(const QString &path)
{
    // A picture without memory for its pixels is null, but what decoders keep beside them throws.
    try {
        return decoded(path);
    } catch (const std::bad_alloc &) {
        return QImage();
    }
}

} // namespace lindenreed::picture_stand
