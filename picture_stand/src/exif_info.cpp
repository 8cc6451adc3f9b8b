#include "exif_info.h"

#include "exif_fields.h"
#include "exif_segment.h"

#include <algorithm>
#include <istream>

namespace TinyEXIF {

namespace {

constexpr std::uint8_t markerStart = 0xFF; ///< more of them before a marker are fill bytes
constexpr std::uint8_t startOfImage = 0xD8;
constexpr std::uint8_t endOfImage = 0xD9;
constexpr std::uint8_t startOfScan = 0xDA;
constexpr std::uint8_t app1 = 0xE1;

/// What one file may cost. A photograph has some dozen segments of three reads each; what takes more than
/// this was made to take long.
constexpr unsigned mostReads = 1'000'000;

/// Another stream, which ends when as much as one file may cost was asked of it.
class BoundedStream : public EXIFStream
{
public:
    explicit BoundedStream(EXIFStream &stream)
        : m_stream(stream)
    {
    }

    bool IsValid() const override { return m_stream.IsValid(); }
    const std::uint8_t *GetBuffer(unsigned n) override
    {
        constexpr unsigned bytesOfOne = 64; // a read of more counts as several
        return pay(1 + n / bytesOfOne) ? m_stream.GetBuffer(n) : nullptr;
    }
    bool SkipBuffer(unsigned n) override { return pay(1) && m_stream.SkipBuffer(n); }

private:
    bool pay(unsigned reads)
    {
        const bool paid = reads <= m_left;
        m_left = paid ? m_left - reads : 0;
        return paid;
    }

    EXIFStream &m_stream;
    unsigned m_left = mostReads;
};

bool hasLength(std::uint8_t marker)
{
    return marker >= 2 && (marker < 0xD0 || marker > startOfImage);
}

/// Hands each entry of the directory at `position` to `take`. False, and none is handed over, where the
/// entries and the link behind them do not fit. The count has to lie in the segment.
template <typename Take>
bool takeDirectory(const Segment &segment, std::uint64_t position, Take take)
{
    constexpr std::uint64_t countLength = 2;
    constexpr std::uint64_t linkLength = 4;
    const std::uint64_t entries = segment.number16(position);
    if (position + countLength + entries * Segment::entryLength + linkLength > segment.length())
        return false;
    for (std::uint64_t i = 0; i < entries; ++i)
        take(segment.entry(position + countLength + i * Segment::entryLength));
    return true;
}

/// The first directory and the two that it refers to. Its link to a next one, which describes a thumbnail, is
/// not followed: no chain of directories can lead in a circle.
int takeDirectories(const Segment &segment, std::uint64_t first, FieldReader &fields)
{
    std::uint64_t exif = segment.length();
    std::uint64_t gps = segment.length();
    const auto takeFirst = [&](const Entry &entry) {
        constexpr std::uint16_t exifTag = 0x8769;
        constexpr std::uint16_t gpsTag = 0x8825;
        // Both are offsets whatever their format says.
        if (entry.tag == exifTag)
            exif = Segment::headerLength + segment.number32(entry.valueField);
        else if (entry.tag == gpsTag)
            gps = Segment::headerLength + segment.number32(entry.valueField);
        else
            fields.takeFirst(entry);
    };
    if (!takeDirectory(segment, first, takeFirst))
        return ParseCorruptData;

    // One that begins outside counts as absent, one that begins inside and ends outside is corrupt.
    constexpr std::uint64_t leastLength = 4;
    if (exif + leastLength <= segment.length()
        && !takeDirectory(segment, exif, [&](const Entry &entry) { fields.takeExif(entry); }))
        return ParseCorruptData;
    if (gps + leastLength <= segment.length()
        && !takeDirectory(segment, gps, [&](const Entry &entry) { fields.takeGps(entry); }))
        return ParseCorruptData;
    return ParseSuccess;
}

} // namespace

EXIFInfo::EXIFInfo(std::istream &stream)
{
    parseFrom(stream);
}

void EXIFInfo::clear()
{
    *this = EXIFInfo();
}

int EXIFInfo::parseFrom(std::istream &stream)
{
    class EXIFStdStream : public EXIFStream
    {
    public:
        // A stream of its own over the same bytes: where the caller's is set to throw, this one only fails.
        explicit EXIFStdStream(const std::istream &stream)
            : m_stream(stream.rdbuf())
        {
            m_stream.setstate(stream.rdstate());
        }

        bool IsValid() const override { return !m_stream.fail(); }

        const std::uint8_t *GetBuffer(unsigned n) override
        {
            m_buffer.resize(n);
            m_stream.read(reinterpret_cast<char *>(m_buffer.data()), std::streamsize(n));
            return m_stream ? m_buffer.data() : nullptr;
        }

        bool SkipBuffer(unsigned n) override
        {
            // A seek throws away what the stream has read ahead. A file of nothing but tiny segments would
            // have it read a thousand times over.
            if (m_stream.rdbuf()->in_avail() >= std::streamsize(n))
                return bool(m_stream.ignore(std::streamsize(n)));
            return bool(m_stream.seekg(n, std::ios::cur));
        }

    private:
        std::istream m_stream;
        std::vector<std::uint8_t> m_buffer;
    };

    EXIFStdStream bytes(stream);
    return parseFrom(bytes);
}

int EXIFInfo::parseFrom(EXIFStream &unbounded)
{
    clear();
    BoundedStream stream(unbounded);
    if (!stream.IsValid())
        return ParseInvalidJpeg;
    const std::uint8_t *bytes = stream.GetBuffer(2);
    if (!bytes || bytes[0] != markerStart || bytes[1] != startOfImage)
        return ParseInvalidJpeg;

    // Whatever comes after it, an EXIF segment that was parsed stands.
    const auto giveUp = [this](int code) { return Fields & (FieldExif | FieldXmp) ? ParseSuccess : code; };

    for (;;) {
        bytes = stream.GetBuffer(2);
        if (!bytes || bytes[0] != markerStart)
            return giveUp(ParseAbsentData);
        std::uint8_t marker = bytes[1];
        while (bytes && marker == markerStart) {
            bytes = stream.GetBuffer(1);
            if (bytes)
                marker = bytes[0];
        }
        if (!bytes)
            continue;
        if (marker == endOfImage || marker == startOfScan)
            return giveUp(ParseAbsentData);
        if (!hasLength(marker))
            continue;

        bytes = stream.GetBuffer(2);
        const unsigned length = bytes ? bytes[0] << 8 | bytes[1] : 0; // of itself and the content
        if (length < 3) // an empty segment, of length 2, counts as an end as well
            return giveUp(ParseInvalidJpeg);
        const unsigned contentLength = length - 2;
        if (marker != app1) {
            if (!stream.SkipBuffer(contentLength))
                return giveUp(ParseInvalidJpeg);
            continue;
        }

        bytes = stream.GetBuffer(contentLength);
        if (!bytes)
            return giveUp(ParseInvalidJpeg);
        const int result = parseFromEXIFSegment(bytes, contentLength);
        if (result == ParseSuccess)
            Fields |= FieldExif; // and on: a later segment overwrites
        else if (result != ParseAbsentData) // that is XMP or something else that is not read
            return giveUp(result);
    }
}

int EXIFInfo::parseFromEXIFSegment(const std::uint8_t *buf, unsigned len)
{
    constexpr std::array<std::uint8_t, Segment::headerLength> header = {'E', 'x', 'i', 'f', 0, 0};
    if (!buf || len < header.size() || !std::equal(header.begin(), header.end(), buf))
        return ParseAbsentData;
    if (len < 14)
        return ParseCorruptData;

    const bool bigEndian = buf[6] == 'M' && buf[7] == 'M';
    if (!bigEndian && (buf[6] != 'I' || buf[7] != 'I'))
        return ParseUnknownByteAlign;
    const Segment segment(buf, len, bigEndian);
    if (segment.number16(8) != 42)
        return ParseCorruptData;
    const std::uint64_t first = Segment::headerLength + segment.number32(10);
    if (first + 2 > len)
        return ParseCorruptData;

    FieldReader fields(*this, segment);
    const int result = takeDirectories(segment, first, fields);
    fields.finish(); // also where a later directory is corrupt
    return result;
}

} // namespace TinyEXIF
