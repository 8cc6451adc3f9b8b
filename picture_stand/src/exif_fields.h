// Which entry fills which field.

#pragma once

#include "exif_segment.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <string>

namespace TinyEXIF {

class EXIFInfo;

/**
 * Takes the entries of one segment into the fields of an EXIFInfo.
 *
 * Numbers are taken at once. Texts and areas are only noted until finish(), the last entry of a field
 * winning: a segment of 64 KiB has room for 5,000 entries, and all of them may refer to the same 60 KiB.
 */
class FieldReader
{
public:
    /// Both have to outlive the reader.
    FieldReader(EXIFInfo &info, const Segment &segment)
        : m_info(info)
        , m_segment(segment)
    {
    }

    void takeExif(const Entry &entry);
    void takeGps(const Entry &entry);
    /// Hands what belongs to no first directory to takeExif().
    void takeFirst(const Entry &entry);
    void finish(); ///< to be called once, after the last entry

private:
    void text(const Entry &entry, std::string &field);
    void shortNumber(const Entry &entry, std::uint16_t &field) const;
    void longNumber(const Entry &entry, std::uint32_t &field) const;
    void rationals(const Entry &entry, std::initializer_list<double *> fields, double cleared = 0) const;
    void exposureIndex(const Entry &entry) const;

    EXIFInfo &m_info;
    const Segment &m_segment;
    std::map<std::string *, Entry> m_texts;
    std::optional<Entry> m_subjectArea;
};

} // namespace TinyEXIF
