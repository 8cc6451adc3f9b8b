#include "exif_orientation.h"

#include <QtEndian>

#include <array>

namespace lindenreed::device {

namespace {

/// The TIFF data of the segment. What lies outside it is 0.
class Tiff
{
public:
    explicit Tiff(QByteArrayView bytes)
        : m_bytes(bytes)
        , m_bigEndian(bytes.startsWith("MM"))
    {
    }
    bool isValid() const { return (m_bigEndian || m_bytes.startsWith("II")) && number<quint16>(2) == 42; }
    template <typename Number>
    Number number(qint64 offset) const
    {
        if (offset < 0 || offset + qint64(sizeof(Number)) > m_bytes.size())
            return 0;
        const char *const place = m_bytes.data() + offset;
        return m_bigEndian ? qFromBigEndian<Number>(place) : qFromLittleEndian<Number>(place);
    }

private:
    QByteArrayView m_bytes;
    bool m_bigEndian;
};

int orientation(const Tiff &tiff)
{
    constexpr int mostDirectories = 10; // more than EXIF knows
    constexpr quint16 orientationTag = 0x0112;
    constexpr quint16 shortType = 3;
    qint64 before = 0;
    qint64 directory = tiff.number<quint32>(4);
    // Only onwards: links in a circle lead nowhere.
    for (int i = 0; i < mostDirectories && directory > before; ++i) {
        const int entries = tiff.number<quint16>(directory);
        for (int entry = 0; entry < entries; ++entry) {
            const qint64 place = directory + 2 + qint64(entry) * 12;
            if (tiff.number<quint16>(place) != orientationTag)
                continue;
            const bool usable
                = tiff.number<quint16>(place + 2) == shortType && tiff.number<quint32>(place + 4) == 1;
            return usable ? tiff.number<quint16>(place + 8) : 0;
        }
        before = directory;
        directory = tiff.number<quint32>(directory + 2 + qint64(entries) * 12);
    }
    return 0;
}

} // namespace

QImageIOHandler::Transformations exifTransformation(QByteArrayView segment)
{
    const QByteArrayView mark("Exif\0\0", 6);
    if (!segment.startsWith(mark))
        return QImageIOHandler::TransformationNone;
    const Tiff tiff(segment.sliced(mark.size()));
    if (!tiff.isValid())
        return QImageIOHandler::TransformationNone;
    // As the EXIF standard numbers them: which side of the scene the first row and column are.
    using Handler = QImageIOHandler;
    constexpr std::array turns = {Handler::TransformationNone,     Handler::TransformationNone,
                                  Handler::TransformationMirror,   Handler::TransformationRotate180,
                                  Handler::TransformationFlip,     Handler::TransformationFlipAndRotate90,
                                  Handler::TransformationRotate90, Handler::TransformationMirrorAndRotate90,
                                  Handler::TransformationRotate270};
    const auto number = std::size_t(orientation(tiff));
    return number < turns.size() ? turns[number] : Handler::TransformationNone;
}

} // namespace lindenreed::device
