// JPEG files and EXIF segments, as cameras and anybody else write them, by the device's reader. The last
// bytes of the input say what is asked of it.

#include "exif_orientation.h"
#include "facts.h"
#include "four_inks.h"
#include "jpeg_handler.h"
#include "qt_jpeg_plugin.h"

#include <QBuffer>
#include <QLoggingCategory>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

using namespace lindenreed::device;

namespace {

void require(bool promise, const char *what)
{
    if (promise)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

/// Bytes that come a few at a time, as from a pipe.
class Pipe : public QIODevice
{
public:
    Pipe(const QByteArray &bytes, qint64 atOnce)
        : m_bytes(bytes)
        , m_atOnce(atOnce)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 count = std::min<qint64>({most, m_bytes.size() - m_place, m_atOnce});
        std::copy_n(m_bytes.constData() + m_place, count, data);
        m_place += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
    const qint64 m_atOnce;
    qint64 m_place = 0;
};

struct Request
{
    QRect clip;
    QRect scaledClip;
    QSize scaledSize;
    int quality = -1;
};

QRect clipOf(FuzzedDataProvider &input)
{
    const int x = input.ConsumeIntegral<std::uint8_t>();
    const int y = input.ConsumeIntegral<std::uint8_t>();
    const int width = input.ConsumeIntegral<std::uint8_t>();
    return {x, y, width, input.ConsumeIntegral<std::uint8_t>()};
}

void ask(QImageIOHandler &reader, const Request &request)
{
    if (!request.clip.isEmpty())
        reader.setOption(QImageIOHandler::ClipRect, request.clip);
    if (!request.scaledSize.isEmpty())
        reader.setOption(QImageIOHandler::ScaledSize, request.scaledSize);
    if (!request.scaledClip.isEmpty())
        reader.setOption(QImageIOHandler::ScaledClipRect, request.scaledClip);
    reader.setOption(QImageIOHandler::Quality, request.quality);
}

struct Read
{
    QSize size;
    QImage::Format format = QImage::Format_Invalid;
    QImage picture;
};

Read read(QIODevice &device, const Request &request)
{
    JpegHandler reader;
    reader.setDevice(&device);
    Read result;
    result.size = reader.option(QImageIOHandler::Size).toSize();
    result.format = reader.option(QImageIOHandler::ImageFormat).value<QImage::Format>();
    const int turn = reader.option(QImageIOHandler::ImageTransformation).toInt();
    require(turn >= 0 && turn <= 7, "a turn of its own");
    ask(reader, request);
    if (!reader.read(&result.picture))
        result.picture = {};
    QImage none;
    require(!reader.read(&none), "the picture came twice");
    return result;
}

Read read(const QByteArray &file, const Request &request)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    return read(buffer, request);
}

QImage readByQt(const QByteArray &file, const Request &request)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    const std::unique_ptr<QImageIOHandler> reader(qtJpegPlugin()->create(&buffer, "jpeg"));
    ask(*reader, request);
    QImage picture;
    return reader->read(&picture) ? withoutInks(picture) : QImage();
}

/// How large a picture must be, where there is one.
QSize expectedSize(QSize whole, const Request &request)
{
    if (!request.scaledSize.isEmpty())
        return request.scaledClip.isEmpty() ? request.scaledSize : request.scaledClip.size();
    QRect clip = request.clip;
    if (clip.isEmpty())
        clip = request.scaledClip;
    else if (!request.scaledClip.isEmpty())
        clip &= request.scaledClip.translated(clip.topLeft());
    const QRect part({}, whole);
    return clip.isEmpty() ? whole : (part & clip).size(); // clips that do not meet are none
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    QLoggingCategory::setFilterRules(QStringLiteral("qt.*=false")); // what Qt itself says of damage
    require(qtJpegPlugin(), "there is no other reader");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto atOnce = qint64(input.ConsumeIntegralInRange<int>(1, 64));
    Request request;
    request.quality = input.ConsumeBool() ? 20 : -1;
    facts().running = input.ConsumeBool();
    request.scaledSize.setWidth(input.ConsumeIntegral<std::uint8_t>());
    request.scaledSize.setHeight(input.ConsumeIntegral<std::uint8_t>());
    request.clip = clipOf(input);
    request.scaledClip = clipOf(input);
    const std::string rest = input.ConsumeRemainingBytesAsString();
    const QByteArray file(rest.data(), qsizetype(rest.size()));

    // A copy of exactly this size, so that a read beyond its end is one beyond its memory.
    const std::vector<char> segment(rest.begin(), rest.end());
    const int turn = exifTransformation(QByteArrayView(segment.data(), qsizetype(segment.size())));
    require(turn >= 0 && turn <= 7 && (turn == 0 || file.startsWith("Exif")), "a turn of its own");

    QBuffer header;
    header.setData(file);
    header.open(QIODevice::ReadOnly);
    JpegHandler reader;
    reader.setDevice(&header);
    const QSize claimed = reader.option(QImageIOHandler::Size).toSize();
    constexpr int mostPixels = 256 * 256; // what larger ones take is not for so many tries
    if (qint64(claimed.width()) * claimed.height() > mostPixels)
        return 0;

    const Read asked = read(file, request);
    require(asked.size == claimed, "the size changed");
    if (!asked.picture.isNull()) {
        require(asked.picture.format() == asked.format, "not the format that was told");
        require(asked.picture.size() == expectedSize(asked.size, request), "not the size that was asked for");
    }
    Pipe pipe(file, atOnce);
    require(read(pipe, request).picture == asked.picture, "other bytes at once, another picture");

    facts().running = false;
    const Read whole = read(file, {});
    require(whole.picture == readByQt(file, {}), "not as Qt reads it");
    if (request.scaledSize.isEmpty())
        require(read(file, request).picture == readByQt(file, request), "not the clip that Qt reads");
    facts().running = true;
    require(read(file, {}).picture.isNull() == whole.picture.isNull(), "what is shown depends on the panel");
    return 0;
}
