// Where libjpeg takes a file's bytes from.

#pragma once

#include <QIODevice>

#include <array>
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

namespace lindenreed::device {

/// A device as libjpeg's source. Reads on from where the device stands; what is missing at the end is made up
/// for by the mark of an end, so that what there is of a file that is cut off is shown.
class JpegSource
{
public:
    explicit JpegSource(QIODevice &device);
    JpegSource(const JpegSource &) = delete;
    JpegSource &operator=(const JpegSource &) = delete;

    jpeg_source_mgr *manager() { return &m_link.manager; }

private:
    /// What libjpeg holds, with the way back.
    struct Link
    {
        jpeg_source_mgr manager = {}; ///< first: its address is the link's
        JpegSource *source = nullptr;
    };
    static JpegSource &of(j_decompress_ptr info);
    void fill();
    void skip(long count);
    void giveBack();

    QIODevice &m_device;
    Link m_link;
    std::array<JOCTET, 32 * 1024> m_buffer;
};

} // namespace lindenreed::device
