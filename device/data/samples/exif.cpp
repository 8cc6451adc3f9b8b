#include "exif.h"

#include <cstdint>

namespace lindenreed::samples {

namespace {

void append16(QByteArray &bytes, unsigned value)
{
    bytes.append(char(value & 0xff));
    bytes.append(char(value >> 8 & 0xff));
}

void append32(QByteArray &bytes, unsigned value)
{
    append16(bytes, value & 0xffff);
    append16(bytes, value >> 16);
}

/// One entry of a directory: 12 bytes, the value in the last four or its place.
void appendEntry(QByteArray &bytes, unsigned tag, unsigned type, unsigned count, unsigned value)
{
    append16(bytes, tag);
    append16(bytes, type);
    append32(bytes, count);
    append32(bytes, value);
}

} // namespace

QByteArray withExif(const QByteArray &jpeg, const QByteArray &dateTime)
{
    constexpr unsigned text = 2;
    constexpr unsigned shortNumber = 3;
    constexpr unsigned longNumber = 4;
    constexpr unsigned undefined = 7;
    constexpr unsigned dateLength = 20; // with the closing zero

    // Places count from the byte order mark. A directory: count, entries, place of the next.
    constexpr unsigned mainPlace = 8;
    constexpr unsigned mainLength = 2 + 3 * 12 + 4;
    constexpr unsigned changedPlace = mainPlace + mainLength;
    constexpr unsigned photoPlace = changedPlace + dateLength;
    constexpr unsigned photoLength = 2 + 3 * 12 + 4;
    constexpr unsigned takenPlace = photoPlace + photoLength;
    constexpr unsigned digitizedPlace = takenPlace + dateLength;

    QByteArray tiff("II*\0", 4);
    append32(tiff, mainPlace);
    append16(tiff, 3);
    appendEntry(tiff, 0x0112, shortNumber, 1, 1); // orientation: as stored
    appendEntry(tiff, 0x0132, text, dateLength, changedPlace);
    appendEntry(tiff, 0x8769, longNumber, 1, photoPlace);
    append32(tiff, 0);
    const QByteArray date = dateTime.leftJustified(dateLength - 1, ' ', true) + '\0';
    tiff += date;
    append16(tiff, 3);
    appendEntry(tiff, 0x9000, undefined, 4, 0x32323230); // version "0220"
    appendEntry(tiff, 0x9003, text, dateLength, takenPlace);
    appendEntry(tiff, 0x9004, text, dateLength, digitizedPlace);
    append32(tiff, 0);
    tiff += date;
    tiff += date;

    const QByteArray content = QByteArray("Exif\0\0", 6) + tiff;
    const auto segmentLength = std::uint16_t(content.size() + 2);
    QByteArray result = jpeg.left(2);
    result.append("\xff\xe1", 2);
    result.append(char(segmentLength >> 8));
    result.append(char(segmentLength & 0xff));
    result += content;
    result += jpeg.mid(2);
    return result;
}

} // namespace lindenreed::samples
