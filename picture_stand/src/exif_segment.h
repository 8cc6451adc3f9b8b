// The bytes of one EXIF segment, and the values that its entries have.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TinyEXIF {

enum class Format : std::uint16_t {
    Byte = 1,
    Ascii = 2,
    Short = 3,
    Long = 4,
    Rational = 5,
    SignedRational = 10,
};

/// One record of a directory, as it is written: format and count may be anything.
struct Entry
{
    std::uint16_t tag = 0;
    Format format = {};
    std::uint32_t count = 0;
    std::uint64_t valueField = 0; ///< position of its four bytes: the value, or an offset

    bool holds(Format wanted) const { return format == wanted && count > 0; }
};

/**
 * Reads numbers and values in the byte order of a segment.
 *
 * Positions count from the segment's first byte. They are 64 bits wide: no sum of what a file says, which is
 * 32 bits wide, wraps around. What is asked for by position has to lie in the segment; what an entry refers
 * to may lie anywhere.
 */
class Segment
{
public:
    static constexpr std::uint64_t headerLength = 6; ///< offsets count from behind it
    static constexpr std::uint64_t entryLength = 12;

    /// Borrows the bytes.
    Segment(const std::uint8_t *bytes, std::uint64_t length, bool bigEndian)
        : m_bytes(bytes)
        , m_length(length)
        , m_bigEndian(bigEndian)
    {
    }

    std::uint64_t length() const { return m_length; }
    std::uint8_t number8(std::uint64_t position) const { return m_bytes[position]; }
    std::uint16_t number16(std::uint64_t position) const;
    std::uint32_t number32(std::uint64_t position) const;
    Entry entry(std::uint64_t position) const;

    /// Of an entry that holds Format::Ascii. Empty where the text lies outside.
    std::string text(const Entry &entry) const;
    /// Of an entry that holds Format::Short. Empty where one of them lies outside.
    std::vector<std::uint16_t> shorts(const Entry &entry) const;
    /// One of the numbers of an entry that holds Format::Rational or Format::SignedRational; nothing where it
    /// lies outside.
    std::optional<double> rational(const Entry &entry, unsigned index = 0) const;

private:
    std::uint64_t referredPosition(const Entry &entry) const
    {
        return headerLength + number32(entry.valueField);
    }

    const std::uint8_t *m_bytes;
    std::uint64_t m_length;
    bool m_bigEndian;
};

} // namespace TinyEXIF
