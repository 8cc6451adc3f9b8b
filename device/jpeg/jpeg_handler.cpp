#include "jpeg_handler.h"

#include "exif_orientation.h"
#include "jpeg_decoder.h"
#include "jpeg_picture.h"
#include "qt_jpeg_plugin.h"

#include <facts.h>

#include <QColorSpace>
#include <QStringList>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

bool hasGreyPanel()
{
    return facts().running && facts().colourMask == 0;
}

/// A comment is "key: value" or a description.
std::pair<QString, QString> textOf(QByteArrayView comment)
{
    const QString text = QString::fromUtf8(comment);
    const qsizetype colon = text.indexOf(": "_L1);
    if (colon < 0 || text.indexOf(u' ') < colon)
        return {u"Description"_s, text};
    return {text.left(colon), text.mid(colon + 2)};
}

} // namespace

JpegHandler::JpegHandler() = default;
JpegHandler::~JpegHandler() = default;

bool JpegHandler::isJpeg(QIODevice &device)
{
    char mark[2] = {};
    return device.peek(mark, sizeof mark) == sizeof mark && mark[0] == '\xff' && mark[1] == '\xd8';
}

bool JpegHandler::canRead() const
{
    if (m_state == State::Done || (m_state == State::Ready && (!device() || !isJpeg(*device()))))
        return false;
    setFormat("jpeg");
    return true;
}

bool JpegHandler::readHeader() const
{
    if (m_state != State::Ready)
        return m_state == State::HeaderRead;
    m_state = State::Done;
    if (!device())
        return false;
    m_decoder = std::make_unique<JpegDecoder>(*device());
    if (!m_decoder->readHeader()) {
        m_decoder.reset();
        return false;
    }
    m_state = State::HeaderRead;
    m_size = m_decoder->size();
    m_format = pictureFormat(*m_decoder, hasGreyPanel());
    keepSegments();
    return true;
}

void JpegHandler::keepSegments() const
{
    QByteArray exif;
    for (const auto *segment = m_decoder->info().marker_list; segment; segment = segment->next) {
        const QByteArrayView bytes(segment->data, qsizetype(segment->data_length));
        const QByteArrayView profileMark("ICC_PROFILE", 12); // with its end; number and count follow
        constexpr int profileAt = 14;
        constexpr int profileHeader = 128 + 4;
        if (segment->marker == JPEG_COM)
            m_texts.append(textOf(bytes));
        else if (segment->marker == JPEG_APP0 + 1)
            exif.append(bytes);
        else if (bytes.size() > profileAt + profileHeader && bytes.startsWith(profileMark))
            m_colourProfile.append(bytes.sliced(profileAt));
    }
    m_transformation = exifTransformation(exif);
}

bool JpegHandler::read(QImage *image)
{
    if (!readHeader())
        return false;
    m_state = State::Done;
    const bool grey = m_format == QImage::Format_Grayscale8;
    const JpegRequest request = {.quality = option(Quality).toInt(),
                                 .clip = option(ClipRect).toRect(),
                                 .scaledSize = option(ScaledSize).toSize(),
                                 .scaledClip = option(ScaledClipRect).toRect()};
    const bool decoded = decodePicture(*m_decoder, request, grey, image);
    const bool coloursAreTheFiles = !grey || m_decoder->info().num_components == 1;
    m_decoder.reset();
    if (!decoded)
        return false;
    for (const auto &[key, text] : std::as_const(m_texts))
        image->setText(key, text);
    if (!m_colourProfile.isEmpty() && coloursAreTheFiles)
        image->setColorSpace(QColorSpace::fromIccProfile(m_colourProfile));
    return true;
}

bool JpegHandler::write(const QImage &image)
{
    QImageIOPlugin *const plugin = qtJpegPlugin();
    const std::unique_ptr<QImageIOHandler> writer(plugin ? plugin->create(device(), "jpeg") : nullptr);
    if (!writer)
        return false;
    for (auto set = m_options.cbegin(); set != m_options.cend(); ++set)
        writer->setOption(set.key(), set.value());
    return writer->write(image);
}

QVariant JpegHandler::option(ImageOption option) const
{
    switch (option) {
    case Quality:
        return m_options.value(option, JpegRequest().quality);
    case ClipRect:
    case ScaledClipRect:
        return m_options.value(option, QRect());
    case ScaledSize:
        return m_options.value(option, QSize());
    case Size:
        readHeader();
        return m_size;
    case ImageFormat:
        readHeader();
        return m_format;
    case ImageTransformation:
        readHeader();
        return int(m_transformation);
    case Description: {
        readHeader();
        QStringList texts;
        for (const auto &[key, text] : std::as_const(m_texts))
            texts.append(key + u": "_s + text.simplified());
        return texts.join(u"\n\n"_s);
    }
    default:
        return {};
    }
}

void JpegHandler::setOption(ImageOption option, const QVariant &value)
{
    m_options.insert(option, value);
}

bool JpegHandler::supportsOption(ImageOption option) const
{
    switch (option) {
    case Quality:
    case ClipRect:
    case ScaledSize:
    case ScaledClipRect:
    case Size:
    case ImageFormat:
    case ImageTransformation:
    case Description:
    case OptimizedWrite:
    case ProgressiveScanWrite:
        return true;
    default:
        return false;
    }
}

} // namespace lindenreed::device
