// EXIF segments and the JPEG files around them, byte by byte. No Qt: fuzzers begin with these as well.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

enum class ByteOrder { Little, Big };

/// A number as the bytes of a file.
inline std::string numberBytes(ByteOrder order, std::uint32_t number, unsigned size)
{
    std::string bytes;
    for (unsigned i = 0; i < size; ++i) {
        const unsigned shift = 8 * (order == ByteOrder::Little ? i : size - 1 - i);
        bytes += char(number >> shift & 0xFF);
    }
    return bytes;
}

/**
 * Writes one segment: header, byte order mark, the directories one behind the other, then the values that do
 * not fit into their entries, in the order in which they were added.
 *
 * The first directory refers to the others where they have been begun. Entries keep their order.
 */
class ExifBuilder
{
public:
    enum Directory { First, Exif, Gps };
    enum Format {
        Byte = 1,
        Ascii = 2,
        Short = 3,
        Long = 4,
        Rational = 5,
        Undefined = 7,
        SignedRational = 10
    };

    static constexpr unsigned headerLength = 6; ///< offsets count from behind it
    static constexpr unsigned firstOffset = 8; ///< of the first directory

    explicit ExifBuilder(ByteOrder order)
        : m_order(order)
    {
    }

    ExifBuilder &begin(Directory directory)
    {
        m_directories[directory].present = true;
        return *this;
    }

    /// `count` as told, whatever the value's length.
    ExifBuilder &value(Directory directory, unsigned tag, unsigned format, std::uint32_t count,
                       const std::string &bytes)
    {
        begin(directory);
        m_directories[directory].entries.push_back({tag, format, count, bytes, bytes.size() > 4});
        return *this;
    }

    /// An entry whose value field holds `field`, be it a number or an offset that leads anywhere.
    ExifBuilder &raw(Directory directory, unsigned tag, unsigned format, std::uint32_t count,
                     std::uint32_t field)
    {
        return value(directory, tag, format, count, numberBytes(m_order, field, 4));
    }

    /// With every byte of `characters` counted: a closing zero has to be among them.
    ExifBuilder &text(Directory directory, unsigned tag, const std::string &characters)
    {
        return value(directory, tag, Ascii, std::uint32_t(characters.size()), characters);
    }

    ExifBuilder &shorts(Directory directory, unsigned tag, const std::vector<std::uint16_t> &numbers)
    {
        std::string bytes;
        for (const std::uint16_t number : numbers)
            bytes += numberBytes(m_order, number, 2);
        return value(directory, tag, Short, std::uint32_t(numbers.size()), bytes);
    }

    ExifBuilder &longNumber(Directory directory, unsigned tag, std::uint32_t number)
    {
        return raw(directory, tag, Long, 1, number);
    }

    /// Numerators and denominators in turn.
    ExifBuilder &rationals(Directory directory, unsigned tag, const std::vector<std::uint32_t> &numbers,
                           Format format = Rational)
    {
        std::string bytes;
        for (const std::uint32_t number : numbers)
            bytes += numberBytes(m_order, number, 4);
        return value(directory, tag, format, std::uint32_t(numbers.size() / 2), bytes);
    }

    ByteOrder order() const { return m_order; }

    /// Where a directory that was begun stands, as an offset.
    std::uint32_t offset(Directory directory) const
    {
        std::uint32_t offset = firstOffset;
        for (int before = First; before < directory; ++before)
            offset += length(Directory(before));
        return offset;
    }

    /// Where the values stand, as an offset.
    std::uint32_t valuesOffset() const { return offset(Gps) + length(Gps); }

    std::string segment() const
    {
        std::string bytes("Exif\0\0", headerLength);
        bytes += m_order == ByteOrder::Little ? "II" : "MM";
        bytes += numberBytes(m_order, 42, 2);
        bytes += numberBytes(m_order, firstOffset, 4);
        std::string values;
        for (const Directory directory : {First, Exif, Gps}) {
            if (length(directory) == 0)
                continue;
            const std::vector<Item> entries = entriesOf(directory);
            bytes += numberBytes(m_order, std::uint32_t(entries.size()), 2);
            for (const Item &entry : entries) {
                bytes += numberBytes(m_order, entry.tag, 2);
                bytes += numberBytes(m_order, entry.format, 2);
                bytes += numberBytes(m_order, entry.count, 4);
                if (entry.apart) {
                    bytes += numberBytes(m_order, valuesOffset() + std::uint32_t(values.size()), 4);
                    values += entry.bytes;
                } else {
                    bytes += entry.bytes + std::string(4 - entry.bytes.size(), '\0');
                }
            }
            bytes += numberBytes(m_order, 0, 4); // no next directory
        }
        return bytes + values;
    }

private:
    struct Item
    {
        unsigned tag;
        unsigned format;
        std::uint32_t count;
        std::string bytes;
        bool apart;
    };
    struct Items
    {
        bool present = false;
        std::vector<Item> entries;
    };

    /// With the references to the other directories, in the first.
    std::vector<Item> entriesOf(Directory directory) const
    {
        std::vector<Item> entries = m_directories[directory].entries;
        if (directory != First)
            return entries;
        if (m_directories[Exif].present)
            entries.push_back({0x8769, Long, 1, numberBytes(m_order, offset(Exif), 4), false});
        if (m_directories[Gps].present)
            entries.push_back({0x8825, Long, 1, numberBytes(m_order, offset(Gps), 4), false});
        return entries;
    }

    std::uint32_t length(Directory directory) const
    {
        if (directory != First && !m_directories[directory].present)
            return 0;
        std::size_t entries = m_directories[directory].entries.size();
        if (directory == First)
            entries += std::size_t(m_directories[Exif].present) + std::size_t(m_directories[Gps].present);
        return std::uint32_t(2 + entries * 12 + 4);
    }

    ByteOrder m_order;
    std::array<Items, 3> m_directories;
};

/// The bytes at an offset, replaced by a number.
inline std::string withNumber(std::string segment, ByteOrder order, std::uint32_t offset,
                              std::uint32_t number, unsigned size)
{
    const std::string bytes = numberBytes(order, number, size);
    std::copy(bytes.begin(), bytes.end(),
              segment.begin() + std::ptrdiff_t(ExifBuilder::headerLength + offset));
    return segment;
}

/// A marker segment of a JPEG file: marker, length, content.
inline std::string jpegSegment(unsigned marker, const std::string &content)
{
    return std::string{char(0xFF), char(marker)}
    + numberBytes(ByteOrder::Big, std::uint32_t(content.size() + 2), 2) + content;
}

inline std::string app1(const std::string &content)
{
    return jpegSegment(0xE1, content);
}

/// `inside` between the marks of start and end.
inline std::string jpegFile(const std::string &inside)
{
    return "\xFF\xD8" + inside + "\xFF\xD9";
}
