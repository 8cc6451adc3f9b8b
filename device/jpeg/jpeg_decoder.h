// A JPEG file, decoded row by row.

#pragma once

#include "jpeg_segments.h"
#include "jpeg_source.h"
#include "scan_memory.h"

#include <QSize>

#include <csetjmp>

namespace lindenreed::device {

/// Errors of libjpeg end in false, after which only the destructor is left; its warnings are dropped, as a
/// picture that is damaged shows what there is. Nothing of C++ lives where libjpeg jumps from.
class JpegDecoder
{
public:
    /// `memory` is what files of several scans have until the decoder goes.
    explicit JpegDecoder(QIODevice &device, ScanMemory &memory = ScanMemory::ofMachine());
    ~JpegDecoder();
    JpegDecoder(const JpegDecoder &) = delete;
    JpegDecoder &operator=(const JpegDecoder &) = delete;

    /// Once, and first. Keeps comments, EXIF data and colour profiles, as far as JpegSegments does, of which
    /// info() has the list.
    bool readHeader();
    const jpeg_decompress_struct &info() const { return m_info; }
    QSize size() const { return {int(m_info.image_width), int(m_info.image_height)}; }

    /// Chooses the size, in eighths of the file's, and the colours. `fast`: less exact.
    bool choose(unsigned eighths, J_COLOR_SPACE colours, bool fast);
    QSize outputSize() const { return {int(m_info.output_width), int(m_info.output_height)}; }
    bool start(); ///< may wait for ScanMemory
    bool readRow(uchar *row); ///< outputSize().width() * info().output_components bytes
    bool finish(); ///< behind the last row

private:
    struct Errors
    {
        jpeg_error_mgr manager = {}; ///< first: its address is the whole's
        std::jmp_buf giveUp = {};
    };
    template <typename Step>
    bool succeeds(Step step);

    JpegSource m_source;
    JpegSegments m_segments;
    ScanMemory &m_memory;
    qint64 m_taken = 0; ///< of it
    Errors m_errors;
    jpeg_progress_mgr m_progress = {};
    jpeg_decompress_struct m_info = {};
};

} // namespace lindenreed::device
