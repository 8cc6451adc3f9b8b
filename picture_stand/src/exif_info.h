// What a camera wrote into a JPEG file.

#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <string>
#include <vector>

namespace TinyEXIF {

enum ParseResult {
    ParseSuccess = 0,
    ParseInvalidJpeg = 1, ///< no JPEG start, or the data ends inside a segment's header
    ParseUnknownByteAlign = 2, ///< neither "II" nor "MM"
    ParseAbsentData = 3, ///< the segment is no EXIF segment, or the file has none
    ParseCorruptData = 4, ///< a length or an offset is out of bounds, or the TIFF magic is wrong
};

/// A file as its reader sees it: from front to back, once.
class EXIFStream
{
public:
    virtual ~EXIFStream() = default;
    virtual bool IsValid() const = 0; ///< it can be read
    /// The next `n` bytes, good until the next call; null where fewer are left.
    virtual const std::uint8_t *GetBuffer(unsigned n) = 0;
    virtual bool SkipBuffer(unsigned n) = 0; ///< moves `n` bytes on
};

/**
 * The EXIF data of one file, for pictures whose date libexif does not give.
 *
 * What the file does not tell is empty or 0, in the GPS group `GpsGroup::unset`. Texts are bytes as the
 * camera wrote them. Any input is safe, and a stream that is set to throw only fails. A file that takes more
 * than a million reads counts as ending there. No Qt, no shared state.
 */
class EXIFInfo
{
public:
    EXIFInfo() = default;
    /// Parses `stream`, which has to be open in binary mode. Whether it held anything is told by Fields.
    explicit EXIFInfo(std::istream &stream);

    int parseFrom(std::istream &stream); ///< a JPEG file; a ParseResult
    int parseFrom(EXIFStream &stream);
    /// The content of one APP1 segment; a ParseResult. What it does not name keeps its value, and what was
    /// read before a fault stays.
    int parseFromEXIFSegment(const std::uint8_t *buf, unsigned len);
    void clear();

    enum Field : std::uint32_t {
        FieldExif = 1, ///< an EXIF segment was parsed
        FieldXmp = 2, ///< never set: XMP is not read
    };
    std::uint32_t Fields = 0;

    std::uint32_t ImageWidth = 0;
    std::uint32_t ImageHeight = 0;
    std::uint32_t RelatedImageWidth = 0;
    std::uint32_t RelatedImageHeight = 0;
    std::string ImageDescription;
    std::string Make;
    std::string Model;
    std::string SerialNumber;
    std::uint16_t Orientation = 0;
    double XResolution = 0;
    double YResolution = 0;
    std::uint16_t ResolutionUnit = 0;
    std::uint16_t BitsPerSample = 0;
    std::string Software;
    std::string DateTime; ///< of the last change
    std::string DateTimeOriginal; ///< of the shot: "2024:05:31 18:20:00"
    std::string DateTimeDigitized;
    std::string SubSecTimeOriginal;
    std::string Copyright;

    double ExposureTime = 0; ///< seconds
    double FNumber = 0;
    double ShutterSpeedValue = 0;
    double ApertureValue = 0;
    double BrightnessValue = 0;
    double ExposureBiasValue = 0;
    double SubjectDistance = 0; ///< metres
    double FocalLength = 0; ///< millimetres
    std::uint16_t ExposureProgram = 0;
    std::uint16_t ISOSpeedRatings = 0;
    std::uint16_t Flash = 0;
    std::uint16_t MeteringMode = 0;
    std::uint16_t LightSource = 0;
    std::vector<std::uint16_t> SubjectArea; ///< point, circle or rectangle

    struct LensGroup
    {
        double FocalLengthMin = 0; ///< millimetres
        double FocalLengthMax = 0;
        double FNumberAtFocalLengthMin = 0;
        double FNumberAtFocalLengthMax = 0;
        double DigitalZoomRatio = 0;
        std::uint16_t FocalLengthIn35mm = 0; ///< millimetres
        double FocalPlaneXResolution = 0;
        double FocalPlaneYResolution = 0;
        std::uint16_t FocalPlaneResolutionUnit = 0;
        std::string Make;
        std::string Model;
    };
    LensGroup Lens;

    struct GpsGroup
    {
        static constexpr double unset = std::numeric_limits<double>::max();
        using Triple = std::array<double, 3>;

        std::string LatitudeRef; ///< "N" or "S"
        Triple LatitudeParts = {unset, unset, unset}; ///< degrees, minutes, seconds
        double Latitude = unset; ///< decimal degrees, negative in the south
        std::string LongitudeRef; ///< "E" or "W"
        Triple LongitudeParts = {unset, unset, unset};
        double Longitude = unset; ///< decimal degrees, negative in the west
        double AltitudeRef = unset; ///< 0: above the sea, 1: below
        double Altitude = unset; ///< metres
        Triple TimeStamp = {unset, unset, unset}; ///< hours, minutes, seconds
        double DOP = unset;
        std::string MapDatum;
        std::string DateStamp;
        double Differential = unset; ///< 0: without correction, 1: with
    };
    GpsGroup GPS;
};

} // namespace TinyEXIF
