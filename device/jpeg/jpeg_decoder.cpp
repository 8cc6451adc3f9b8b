#include "jpeg_decoder.h"

#include <span>
#include <type_traits>

namespace lindenreed::device {

namespace {

// Each scan goes through the whole picture, at up to a nanosecond a pixel, and takes a few bytes in a file: a
// small file could keep a thread for hours. Programs write about ten.
constexpr int mostScans = 1000;
constexpr qint64 mostScannedPixels = 2'000'000'000; // ten scans of 200 megapixels, all in all

bool scansTooMuch(const jpeg_decompress_struct &info)
{
    const qint64 pixels = qint64(info.image_width) * info.image_height;
    return info.input_scan_number > mostScans || info.input_scan_number * pixels > mostScannedPixels;
}

/// What libjpeg holds of a file of several scans: all coefficients of whole blocks. Three bytes a pixel as
/// cameras write them, six where no colour is sampled down, eight of four inks.
qint64 coefficientBytes(jpeg_decompress_struct &info)
{
    if (!jpeg_has_multiple_scans(&info))
        return 0;
    const auto roundedUp = [](qint64 blocks, int unit) { return (blocks + unit - 1) / unit * unit; };
    qint64 blocks = 0;
    for (const auto &part : std::span(info.comp_info, std::size_t(info.num_components)))
        blocks += roundedUp(part.width_in_blocks, part.h_samp_factor)
            * roundedUp(part.height_in_blocks, part.v_samp_factor);
    return blocks * qint64(sizeof(JBLOCK));
}

} // namespace

template <typename Step>
bool JpegDecoder::succeeds(Step step)
{
    static_assert(std::is_trivially_destructible_v<Step>);
    // NOLINTNEXTLINE(bugprone-*): libjpeg knows no other way; the step has nothing to destroy
    if (setjmp(m_errors.giveUp) != 0)
        return false;
    step();
    return true;
}

JpegDecoder::JpegDecoder(QIODevice &device, ScanMemory &memory)
    : m_source(device)
    , m_memory(memory)
{
    static_assert(std::is_standard_layout_v<Errors>);
    m_info.err = jpeg_std_error(&m_errors.manager);
    m_errors.manager.error_exit = [](j_common_ptr info) {
        std::longjmp(static_cast<Errors *>(static_cast<void *>(info->err))->giveUp, 1);
    };
    m_errors.manager.output_message = [](j_common_ptr) {};
    m_progress.progress_monitor = [](j_common_ptr info) {
        if (scansTooMuch(*static_cast<j_decompress_ptr>(static_cast<void *>(info))))
            info->err->error_exit(info);
    };
}

JpegDecoder::~JpegDecoder()
{
    jpeg_destroy_decompress(&m_info);
    m_memory.giveBack(m_taken);
}

bool JpegDecoder::readHeader()
{
    return succeeds([this] {
        jpeg_create_decompress(&m_info);
        m_info.src = m_source.manager();
        m_info.progress = &m_progress;
        m_segments.keepFrom(m_info);
        jpeg_read_header(&m_info, TRUE);
        jpeg_calc_output_dimensions(&m_info);
    });
}

bool JpegDecoder::choose(unsigned eighths, J_COLOR_SPACE colours, bool fast)
{
    return succeeds([=, this] {
        m_info.scale_num = eighths;
        m_info.scale_denom = 8;
        m_info.out_color_space = colours;
        if (fast) {
            m_info.dct_method = JDCT_IFAST;
            m_info.do_fancy_upsampling = FALSE;
        }
        jpeg_calc_output_dimensions(&m_info);
    });
}

bool JpegDecoder::start()
{
    // A header that asks for more is refused before it takes anything.
    const qint64 bytes = coefficientBytes(m_info);
    if (bytes > 0) {
        if (!m_memory.take(bytes))
            return false;
        m_taken = bytes;
    }
    return succeeds([this] { jpeg_start_decompress(&m_info); });
}

bool JpegDecoder::readRow(uchar *row)
{
    return succeeds([this, row] {
        JSAMPROW rows[] = {row};
        jpeg_read_scanlines(&m_info, rows, 1);
    });
}

bool JpegDecoder::finish()
{
    return succeeds([this] { jpeg_finish_decompress(&m_info); });
}

} // namespace lindenreed::device
