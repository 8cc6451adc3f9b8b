// The fields of EXIF data and the entries that they come from.

#pragma once

#include "exif_builder.h"

#include <exif_info.h>

#include <string>
#include <vector>

/// What an entry has to be like to be taken.
enum class ValueKind { Text, Short, LongOrShort, Ratio, Ratios, Area, Byte };

inline std::string shown(const std::string &text)
{
    return text;
}

inline std::string shown(double number)
{
    return std::to_string(number);
}

inline std::string shown(const TinyEXIF::EXIFInfo::GpsGroup::Triple &numbers)
{
    return shown(numbers[0]) + ' ' + shown(numbers[1]) + ' ' + shown(numbers[2]);
}

inline std::string shown(const std::vector<std::uint16_t> &numbers)
{
    std::string text;
    for (const std::uint16_t number : numbers)
        text += std::to_string(number) + ' ';
    return text;
}

/// A field, and the one entry that fills it.
struct ExifField
{
    const char *name;
    ExifBuilder::Directory directory;
    unsigned tag;
    ValueKind kind;
    std::string (*read)(const TinyEXIF::EXIFInfo &);
};

#define EXIF_FIELD(directory, tag, kind, member)                                                             \
    {                                                                                                        \
#member, ExifBuilder::directory, tag, ValueKind::kind,                                               \
            [](const TinyEXIF::EXIFInfo &info) { return shown(info.member); }                                \
    }

inline const ExifField exifFields[] = {
    EXIF_FIELD(First, 0x0102, Short, BitsPerSample),
    EXIF_FIELD(First, 0x010E, Text, ImageDescription),
    EXIF_FIELD(First, 0x010F, Text, Make),
    EXIF_FIELD(First, 0x0110, Text, Model),
    EXIF_FIELD(First, 0x0112, Short, Orientation),
    EXIF_FIELD(First, 0x011A, Ratio, XResolution),
    EXIF_FIELD(First, 0x011B, Ratio, YResolution),
    EXIF_FIELD(First, 0x0128, Short, ResolutionUnit),
    EXIF_FIELD(First, 0x0131, Text, Software),
    EXIF_FIELD(First, 0x0132, Text, DateTime),
    EXIF_FIELD(First, 0x1001, LongOrShort, RelatedImageWidth),
    EXIF_FIELD(First, 0x1002, LongOrShort, RelatedImageHeight),
    EXIF_FIELD(First, 0x8298, Text, Copyright),
    EXIF_FIELD(Exif, 0x829A, Ratio, ExposureTime),
    EXIF_FIELD(Exif, 0x829D, Ratio, FNumber),
    EXIF_FIELD(Exif, 0x8822, Short, ExposureProgram),
    EXIF_FIELD(Exif, 0x8827, Short, ISOSpeedRatings),
    EXIF_FIELD(Exif, 0x9003, Text, DateTimeOriginal),
    EXIF_FIELD(Exif, 0x9004, Text, DateTimeDigitized),
    EXIF_FIELD(Exif, 0x9201, Ratio, ShutterSpeedValue),
    EXIF_FIELD(Exif, 0x9202, Ratio, ApertureValue),
    EXIF_FIELD(Exif, 0x9203, Ratio, BrightnessValue),
    EXIF_FIELD(Exif, 0x9204, Ratio, ExposureBiasValue),
    EXIF_FIELD(Exif, 0x9206, Ratio, SubjectDistance),
    EXIF_FIELD(Exif, 0x9207, Short, MeteringMode),
    EXIF_FIELD(Exif, 0x9208, Short, LightSource),
    EXIF_FIELD(Exif, 0x9209, Short, Flash),
    EXIF_FIELD(Exif, 0x920A, Ratio, FocalLength),
    EXIF_FIELD(Exif, 0x9214, Area, SubjectArea),
    EXIF_FIELD(Exif, 0x9291, Text, SubSecTimeOriginal),
    EXIF_FIELD(Exif, 0xA002, LongOrShort, ImageWidth),
    EXIF_FIELD(Exif, 0xA003, LongOrShort, ImageHeight),
    EXIF_FIELD(Exif, 0xA20E, Ratio, Lens.FocalPlaneXResolution),
    EXIF_FIELD(Exif, 0xA20F, Ratio, Lens.FocalPlaneYResolution),
    EXIF_FIELD(Exif, 0xA210, Short, Lens.FocalPlaneResolutionUnit),
    EXIF_FIELD(Exif, 0xA404, Ratio, Lens.DigitalZoomRatio),
    EXIF_FIELD(Exif, 0xA405, Short, Lens.FocalLengthIn35mm),
    EXIF_FIELD(Exif, 0xA431, Text, SerialNumber),
    EXIF_FIELD(Exif, 0xA433, Text, Lens.Make),
    EXIF_FIELD(Exif, 0xA434, Text, Lens.Model),
    EXIF_FIELD(Gps, 1, Text, GPS.LatitudeRef),
    EXIF_FIELD(Gps, 2, Ratios, GPS.LatitudeParts),
    EXIF_FIELD(Gps, 3, Text, GPS.LongitudeRef),
    EXIF_FIELD(Gps, 4, Ratios, GPS.LongitudeParts),
    EXIF_FIELD(Gps, 5, Byte, GPS.AltitudeRef),
    EXIF_FIELD(Gps, 6, Ratio, GPS.Altitude),
    EXIF_FIELD(Gps, 7, Ratios, GPS.TimeStamp),
    EXIF_FIELD(Gps, 11, Ratio, GPS.DOP),
    EXIF_FIELD(Gps, 18, Text, GPS.MapDatum),
    EXIF_FIELD(Gps, 29, Text, GPS.DateStamp),
    EXIF_FIELD(Gps, 30, Short, GPS.Differential),
};
