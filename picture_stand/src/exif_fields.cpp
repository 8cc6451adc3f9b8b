#include "exif_fields.h"

#include "exif_info.h"

#include <algorithm>
#include <limits>

namespace TinyEXIF {

namespace {

constexpr double unset = EXIFInfo::GpsGroup::unset;

double decimalDegrees(const EXIFInfo::GpsGroup::Triple &parts, const std::string &direction, char negative)
{
    if (std::find(parts.begin(), parts.end(), unset) != parts.end())
        return unset;
    const auto [degrees, minutes, seconds] = parts;
    const double absolute = degrees + minutes / 60 + seconds / 3600;
    return direction.starts_with(negative) ? -absolute : absolute;
}

} // namespace

void FieldReader::takeFirst(const Entry &entry)
{
    switch (entry.tag) {
    case 0x0102:
        return shortNumber(entry, m_info.BitsPerSample);
    case 0x010E:
        return text(entry, m_info.ImageDescription);
    case 0x010F:
        return text(entry, m_info.Make);
    case 0x0110:
        return text(entry, m_info.Model);
    case 0x0112:
        return shortNumber(entry, m_info.Orientation);
    case 0x011A:
        return rationals(entry, {&m_info.XResolution});
    case 0x011B:
        return rationals(entry, {&m_info.YResolution});
    case 0x0128:
        return shortNumber(entry, m_info.ResolutionUnit);
    case 0x0131:
        return text(entry, m_info.Software);
    case 0x0132:
        return text(entry, m_info.DateTime);
    case 0x1001:
        return longNumber(entry, m_info.RelatedImageWidth);
    case 0x1002:
        return longNumber(entry, m_info.RelatedImageHeight);
    case 0x8298:
        return text(entry, m_info.Copyright);
    }
    takeExif(entry);
}

void FieldReader::takeExif(const Entry &entry)
{
    EXIFInfo::LensGroup &lens = m_info.Lens;
    switch (entry.tag) {
    case 0x829A:
        return rationals(entry, {&m_info.ExposureTime});
    case 0x829D:
        return rationals(entry, {&m_info.FNumber});
    case 0x8822:
        return shortNumber(entry, m_info.ExposureProgram);
    case 0x8827:
        return shortNumber(entry, m_info.ISOSpeedRatings);
    case 0x9003:
        return text(entry, m_info.DateTimeOriginal);
    case 0x9004:
        return text(entry, m_info.DateTimeDigitized);
    case 0x9201:
        return rationals(entry, {&m_info.ShutterSpeedValue});
    case 0x9202:
        return rationals(entry, {&m_info.ApertureValue});
    case 0x9203:
        return rationals(entry, {&m_info.BrightnessValue});
    case 0x9204:
        return rationals(entry, {&m_info.ExposureBiasValue});
    case 0x9206:
        return rationals(entry, {&m_info.SubjectDistance});
    case 0x9207:
        return shortNumber(entry, m_info.MeteringMode);
    case 0x9208:
        return shortNumber(entry, m_info.LightSource);
    case 0x9209:
        return shortNumber(entry, m_info.Flash);
    case 0x920A:
        return rationals(entry, {&m_info.FocalLength});
    case 0x9214:
        if (entry.holds(Format::Short) && entry.count > 1)
            m_subjectArea = entry;
        return;
    case 0x9291:
        return text(entry, m_info.SubSecTimeOriginal);
    case 0xA002:
        return longNumber(entry, m_info.ImageWidth);
    case 0xA003:
        return longNumber(entry, m_info.ImageHeight);
    case 0xA20E:
        return rationals(entry, {&lens.FocalPlaneXResolution});
    case 0xA20F:
        return rationals(entry, {&lens.FocalPlaneYResolution});
    case 0xA210:
        return shortNumber(entry, lens.FocalPlaneResolutionUnit);
    case 0xA215:
        return exposureIndex(entry);
    case 0xA404:
        return rationals(entry, {&lens.DigitalZoomRatio});
    case 0xA405:
        return shortNumber(entry, lens.FocalLengthIn35mm);
    case 0xA431:
        return text(entry, m_info.SerialNumber);
    case 0xA432:
        return rationals(entry,
                         {&lens.FocalLengthMin, &lens.FocalLengthMax, &lens.FNumberAtFocalLengthMin,
                          &lens.FNumberAtFocalLengthMax});
    case 0xA433:
        return text(entry, lens.Make);
    case 0xA434:
        return text(entry, lens.Model);
    }
}

void FieldReader::takeGps(const Entry &entry)
{
    EXIFInfo::GpsGroup &gps = m_info.GPS;
    const auto triple = [&](EXIFInfo::GpsGroup::Triple &field) {
        rationals(entry, {&field[0], &field[1], &field[2]}, unset);
    };
    switch (entry.tag) {
    case 1:
        return text(entry, gps.LatitudeRef);
    case 2:
        return triple(gps.LatitudeParts);
    case 3:
        return text(entry, gps.LongitudeRef);
    case 4:
        return triple(gps.LongitudeParts);
    case 5:
        if (entry.holds(Format::Byte))
            gps.AltitudeRef = m_segment.number8(entry.valueField);
        return;
    case 6:
        return rationals(entry, {&gps.Altitude}, unset);
    case 7:
        return triple(gps.TimeStamp);
    case 11:
        return rationals(entry, {&gps.DOP}, unset);
    case 18:
        return text(entry, gps.MapDatum);
    case 29:
        return text(entry, gps.DateStamp);
    case 30:
        if (entry.holds(Format::Short))
            gps.Differential = m_segment.number16(entry.valueField);
        return;
    }
}

void FieldReader::finish()
{
    for (const auto &[field, entry] : m_texts)
        *field = m_segment.text(entry);
    if (m_subjectArea)
        m_info.SubjectArea = m_segment.shorts(*m_subjectArea);

    EXIFInfo::GpsGroup &gps = m_info.GPS;
    gps.Latitude = decimalDegrees(gps.LatitudeParts, gps.LatitudeRef, 'S');
    gps.Longitude = decimalDegrees(gps.LongitudeParts, gps.LongitudeRef, 'W');
}

void FieldReader::text(const Entry &entry, std::string &field)
{
    if (entry.holds(Format::Ascii))
        m_texts.insert_or_assign(&field, entry);
}

void FieldReader::shortNumber(const Entry &entry, std::uint16_t &field) const
{
    if (entry.holds(Format::Short))
        field = m_segment.number16(entry.valueField);
}

void FieldReader::longNumber(const Entry &entry, std::uint32_t &field) const
{
    if (entry.holds(Format::Long))
        field = m_segment.number32(entry.valueField);
    else if (entry.holds(Format::Short))
        field = m_segment.number16(entry.valueField);
}

void FieldReader::rationals(const Entry &entry, std::initializer_list<double *> fields, double cleared) const
{
    if (!entry.holds(Format::Rational) && !entry.holds(Format::SignedRational))
        return;
    if (entry.count < fields.size())
        return;
    unsigned index = 0;
    for (double *field : fields)
        *field = m_segment.rational(entry, index++).value_or(cleared);
}

void FieldReader::exposureIndex(const Entry &entry) const
{
    // What some cameras write in place of the speed.
    if (m_info.ISOSpeedRatings != 0)
        return;
    shortNumber(entry, m_info.ISOSpeedRatings);
    double index = 0;
    rationals(entry, {&index});
    if (index > 0 && index <= std::numeric_limits<std::uint16_t>::max())
        m_info.ISOSpeedRatings = std::uint16_t(index);
}

} // namespace TinyEXIF
