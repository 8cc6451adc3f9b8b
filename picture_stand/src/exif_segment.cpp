#include "exif_segment.h"

#include <string_view>

namespace TinyEXIF {

namespace {

constexpr std::uint64_t valueFieldLength = 4;

} // namespace

std::uint16_t Segment::number16(std::uint64_t position) const
{
    const unsigned first = m_bytes[position];
    const unsigned second = m_bytes[position + 1];
    return std::uint16_t(m_bigEndian ? first << 8 | second : second << 8 | first);
}

std::uint32_t Segment::number32(std::uint64_t position) const
{
    const std::uint32_t first = number16(position);
    const std::uint32_t second = number16(position + 2);
    return m_bigEndian ? first << 16 | second : second << 16 | first;
}

Entry Segment::entry(std::uint64_t position) const
{
    return {number16(position), Format(number16(position + 2)), number32(position + 4), position + 8};
}

std::string Segment::text(const Entry &entry) const
{
    const auto *characters = reinterpret_cast<const char *>(m_bytes);
    if (entry.count <= valueFieldLength) {
        // As it stands: blanks stay, and of several closing zeros one goes.
        std::string_view text(characters + entry.valueField, entry.count);
        if (text.back() == '\0')
            text.remove_suffix(1);
        return std::string(text);
    }

    const std::uint64_t position = referredPosition(entry);
    if (position + entry.count > m_length)
        return {};
    std::string_view text(characters + position, entry.count);
    text = text.substr(0, text.find('\0'));
    text = text.substr(0, text.find_last_not_of(' ') + 1); // no other character: npos + 1 is 0
    return std::string(text);
}

std::vector<std::uint16_t> Segment::shorts(const Entry &entry) const
{
    const std::uint64_t size = std::uint64_t(entry.count) * 2;
    const std::uint64_t position = size <= valueFieldLength ? entry.valueField : referredPosition(entry);
    if (position + size > m_length)
        return {};
    std::vector<std::uint16_t> numbers(entry.count);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = number16(position + i * 2);
    return numbers;
}

std::optional<double> Segment::rational(const Entry &entry, unsigned index) const
{
    constexpr std::uint64_t size = 8;
    const std::uint64_t position = referredPosition(entry) + index * size;
    if (position + size > m_length)
        return std::nullopt;
    const std::uint32_t numerator = number32(position);
    const std::uint32_t denominator = number32(position + 4);
    if (denominator == 0)
        return 0.0;
    if (entry.format == Format::SignedRational)
        return double(std::int32_t(numerator)) / double(std::int32_t(denominator));
    return double(numerator) / double(denominator);
}

} // namespace TinyEXIF
