// What a JPEG file says beside its picture: comments, EXIF data, profiles of colours.

#pragma once

#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

namespace lindenreed::device {

/// Has a decoder keep such segments in its list of markers, in the file's order. A small file may have a
/// hundred thousand of them: what comes behind the first 1,000, or is more than 4 MiB all in all, is passed
/// over. libjpeg's own list has no end, and takes a walk along all of it for each segment.
class JpegSegments
{
public:
    static constexpr int most = 1000;
    static constexpr std::size_t mostBytes = 4 * 1024 * 1024; ///< 64 of the longest

    JpegSegments() = default;
    JpegSegments(const JpegSegments &) = delete;
    JpegSegments &operator=(const JpegSegments &) = delete;

    /// Before the header is read; must outlive that of the last segment. Takes the decoder's client_data.
    void keepFrom(jpeg_decompress_struct &info);

private:
    static boolean read(j_decompress_ptr info);

    jpeg_saved_marker_ptr m_last = nullptr;
    int m_count = 0;
    std::size_t m_bytes = 0;
};

} // namespace lindenreed::device
