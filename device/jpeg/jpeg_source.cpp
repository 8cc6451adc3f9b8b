#include "jpeg_source.h"

#include <type_traits>

namespace lindenreed::device {

JpegSource::JpegSource(QIODevice &device)
    : m_device(device)
{
    static_assert(std::is_standard_layout_v<Link>);
    m_link.source = this;
    m_link.manager.init_source = [](j_decompress_ptr) {};
    m_link.manager.fill_input_buffer = [](j_decompress_ptr info) -> boolean {
        of(info).fill();
        return TRUE;
    };
    m_link.manager.skip_input_data = [](j_decompress_ptr info, long count) { of(info).skip(count); };
    m_link.manager.resync_to_restart = jpeg_resync_to_restart;
    m_link.manager.term_source = [](j_decompress_ptr info) { of(info).giveBack(); };
}

JpegSource &JpegSource::of(j_decompress_ptr info)
{
    return *reinterpret_cast<Link *>(info->src)->source;
}

void JpegSource::fill()
{
    qint64 count = m_device.read(reinterpret_cast<char *>(m_buffer.data()), qint64(m_buffer.size()));
    if (count <= 0) {
        m_buffer[0] = 0xff;
        m_buffer[1] = JPEG_EOI;
        count = 2;
    }
    m_link.manager.next_input_byte = m_buffer.data();
    m_link.manager.bytes_in_buffer = std::size_t(count);
}

void JpegSource::skip(long count)
{
    // A segment is 64 KiB at most: nothing is gained by moving the device.
    while (count > long(m_link.manager.bytes_in_buffer)) {
        count -= long(m_link.manager.bytes_in_buffer);
        fill();
    }
    if (count > 0) {
        m_link.manager.next_input_byte += count;
        m_link.manager.bytes_in_buffer -= std::size_t(count);
    }
}

void JpegSource::giveBack()
{
    // What stands behind the picture may be another one's.
    if (!m_device.isSequential())
        m_device.seek(m_device.pos() - qint64(m_link.manager.bytes_in_buffer));
}

} // namespace lindenreed::device
