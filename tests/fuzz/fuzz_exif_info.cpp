// JPEG files and EXIF segments, as cameras and anybody else write them.

#include "exif_info.h"
#include "require.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

using namespace TinyEXIF;

namespace {

/// No value is longer than what it was read from.
void requireWithin(const EXIFInfo &info, std::size_t size)
{
    for (const std::string *text :
         {&info.ImageDescription, &info.Make, &info.Model, &info.SerialNumber, &info.Software, &info.DateTime,
          &info.DateTimeOriginal, &info.DateTimeDigitized, &info.SubSecTimeOriginal, &info.Copyright,
          &info.Lens.Make, &info.Lens.Model, &info.GPS.LatitudeRef, &info.GPS.LongitudeRef,
          &info.GPS.MapDatum, &info.GPS.DateStamp})
        require(text->size() <= size && text->capacity() <= std::max(size, std::string().capacity()));
    require(info.SubjectArea.capacity() * 2 <= size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::istringstream file(std::string(reinterpret_cast<const char *>(data), size));
    EXIFInfo fromFile;
    const int result = fromFile.parseFrom(file);
    require(result >= ParseSuccess && result <= ParseCorruptData);
    require((result == ParseSuccess) == (fromFile.Fields == EXIFInfo::FieldExif));
    requireWithin(fromFile, size);

    // A copy of exactly this size, so that a read beyond its end is one beyond its memory.
    const std::vector<std::uint8_t> segment(data, data + size);
    EXIFInfo fromSegment;
    const int segmentResult = fromSegment.parseFromEXIFSegment(segment.data(), unsigned(size));
    require(segmentResult >= ParseSuccess && segmentResult <= ParseCorruptData);
    require(segmentResult != ParseInvalidJpeg && fromSegment.Fields == 0);
    requireWithin(fromSegment, size);
    return 0;
}
