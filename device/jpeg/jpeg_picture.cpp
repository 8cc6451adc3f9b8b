#include "jpeg_picture.h"

#include "jpeg_decoder.h"
#include "row_reducer.h"

#include <QImageIOHandler>
#include <QImageReader>

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

namespace lindenreed::device {

namespace {

constexpr int exactFrom = 50; // the quality from which on Qt is exact, smooth scaling included
constexpr int wholeSize = 8; // in eighths

/// Of the file's size, with which neither side falls below `wanted`.
int eighthsFor(QSize size, QSize wanted, QImage::Format format)
{
    const auto needed = [](qint64 length, qint64 target) { return (target * 8 + length - 1) / length; };
    const qint64 fewest
        = std::max(needed(size.width(), wanted.width()), needed(size.height(), wanted.height()));
    // Of grey, the scales between take as long as the whole file and are further from a picture that was
    // reduced from it, 4/8 further even than 3/8; those below 3/8 save next to nothing. In colour, with four
    // times as much to reduce, the smallest is the fastest.
    if (format == QImage::Format_Grayscale8)
        return fewest <= 3 ? 3 : wholeSize;
    return int(std::clamp<qint64>(fewest, 1, wholeSize));
}

/// The colours that libjpeg is to make, so that its rows are a picture's. It cannot turn CMYK into others.
J_COLOR_SPACE rowColours(const JpegDecoder &decoder, QImage::Format format)
{
    if (decoder.info().num_components == 4)
        return JCS_CMYK;
    if (format == QImage::Format_Grayscale8)
        return JCS_GRAYSCALE;
    return Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB; // as in Format_RGB32
}

/// libjpeg enlarges by whole numbers alone, and says so where it has to. A grey panel, for which it makes no
/// colours, shows no more than others.
bool isWholeSampling(const jpeg_decompress_struct &info)
{
    const std::span parts(info.comp_info, std::size_t(info.num_components));
    return std::ranges::all_of(parts, [&info](const jpeg_component_info &part) {
        return info.max_h_samp_factor % part.h_samp_factor == 0
            && info.max_v_samp_factor % part.v_samp_factor == 0;
    });
}

/// CMYK as programs of the printing trade write it: inverted.
void convertCmyk(const uchar *cmyk, int width, QImage::Format format, uchar *row)
{
    for (int x = 0; x < width; ++x, cmyk += 4) {
        const int light = cmyk[3];
        const int red = light * cmyk[0] / 255;
        const int green = light * cmyk[1] / 255;
        const int blue = light * cmyk[2] / 255;
        if (format == QImage::Format_Grayscale8)
            row[x] = uchar((red * 19595 + green * 38470 + blue * 7471 + 32768) >> 16); // luma, as JPEG has it
        else
            static_cast<QRgb *>(static_cast<void *>(row))[x] = qRgb(red, green, blue);
    }
}

/// Where no size is asked for, the two clips are one.
void joinClips(JpegRequest &request)
{
    if (!request.scaledSize.isEmpty() || request.scaledClip.isEmpty())
        return;
    request.clip = request.clip.isEmpty()
        ? request.scaledClip
        : request.scaledClip.translated(request.clip.topLeft()).intersected(request.clip);
    request.scaledClip = {};
}

bool isAllowed(QSize size)
{
    const qint64 limit = QImageReader::allocationLimit();
    return limit <= 0 || qint64(size.width()) * size.height() * 4 <= limit * 1024 * 1024;
}

/// Decodes `part` of the picture, of `format`, into `image`, which has the part's size or, smaller, is
/// reduced to.
bool decodeRows(JpegDecoder &decoder, QRect part, QImage *image)
{
    const QImage::Format format = image->format();
    const int channels = format == QImage::Format_Grayscale8 ? 1 : 4;
    if (!decoder.start())
        return false;
    std::optional<RowReducer> reducer;
    if (image->size() != part.size()) {
        // libjpeg rounds the reduced size up, and repeats what the last column and row then have too much.
        const QSizeF extent = part.size() == decoder.outputSize()
            ? QSizeF(decoder.size()) * decoder.info().scale_num / decoder.info().scale_denom
            : QSizeF(part.size());
        reducer.emplace(RowReducer::Size{part.width(), part.height()},
                        RowReducer::Extent{extent.width(), extent.height()},
                        RowReducer::Size{image->width(), image->height()}, channels,
                        std::span(image->bits(), std::size_t(image->sizeInBytes())),
                        std::size_t(image->bytesPerLine()));
    }

    const auto &info = decoder.info();
    const bool cmyk = info.out_color_space == JCS_CMYK;
    const bool direct = !cmyk && part.size() == decoder.outputSize();
    std::vector<uchar> decoded(std::size_t(info.output_width) * std::size_t(info.output_components));
    for (int y = 0; y <= part.bottom(); ++y) {
        const int line = y - part.y();
        uchar *const target = line < 0 ? nullptr : reducer ? reducer->nextRow() : image->scanLine(line);
        if (!decoder.readRow(direct ? target : decoded.data()))
            return false;
        if (line < 0)
            continue;
        if (cmyk)
            convertCmyk(decoded.data() + std::ptrdiff_t(part.x()) * 4, part.width(), format, target);
        else if (!direct)
            std::copy_n(decoded.data() + std::ptrdiff_t(part.x()) * channels, part.width() * channels,
                        target);
        if (reducer)
            reducer->add();
    }
    return part.bottom() + 1 < decoder.outputSize().height() || decoder.finish();
}

void setResolution(const jpeg_decompress_struct &info, QImage *image)
{
    constexpr double centimetresOfAnInch = 2.54;
    if (info.density_unit == 1) {
        image->setDotsPerMeterX(int(100. * info.X_density / centimetresOfAnInch));
        image->setDotsPerMeterY(int(100. * info.Y_density / centimetresOfAnInch));
    } else if (info.density_unit == 2) {
        image->setDotsPerMeterX(int(100. * info.X_density));
        image->setDotsPerMeterY(int(100. * info.Y_density));
    }
}

} // namespace

QImage::Format pictureFormat(const JpegDecoder &decoder, bool greyPanel)
{
    switch (decoder.info().num_components) {
    case 1:
        return QImage::Format_Grayscale8;
    case 3:
    case 4:
        return greyPanel ? QImage::Format_Grayscale8 : QImage::Format_RGB32;
    default:
        return QImage::Format_Invalid;
    }
}

bool decodePicture(JpegDecoder &decoder, JpegRequest request, bool greyPanel, QImage *image)
{
    const QImage::Format format = pictureFormat(decoder, greyPanel);
    if (format == QImage::Format_Invalid || !isWholeSampling(decoder.info()))
        return false;
    joinClips(request);
    const bool scaled = !request.scaledSize.isEmpty();
    const int eighths = scaled && request.clip.isEmpty()
        ? eighthsFor(decoder.size(), request.scaledSize, format)
        : wholeSize;
    const bool exact = request.quality < 0 || request.quality >= exactFrom;
    if (!decoder.choose(unsigned(eighths), rowColours(decoder, format), !exact))
        return false;

    QRect part({}, decoder.outputSize());
    if (!request.clip.isEmpty())
        part &= request.clip;
    const bool reduced = scaled && request.scaledSize.width() <= part.width()
        && request.scaledSize.height() <= part.height();
    // Of what is reduced little is held; Qt's limit is for all that libjpeg makes all the same.
    if (part.isEmpty() || (reduced && !isAllowed(part.size())))
        return false;
    if (!QImageIOHandler::allocateImage(reduced ? request.scaledSize : part.size(), format, image)
        || !decodeRows(decoder, part, image))
        return false;
    setResolution(decoder.info(), image);
    if (scaled && !reduced) {
        *image = image->scaled(request.scaledSize, Qt::IgnoreAspectRatio,
                               exact ? Qt::SmoothTransformation : Qt::FastTransformation);
    }
    if (!request.scaledClip.isEmpty())
        *image = image->copy(request.scaledClip);
    return !image->isNull();
}

} // namespace lindenreed::device
