#include "jpeg_segments.h"

#include <algorithm>

namespace lindenreed::device {

namespace {

// Sources here never suspend: there is always a next byte.

void fill(jpeg_source_mgr &source, j_decompress_ptr info)
{
    if (source.bytes_in_buffer == 0)
        source.fill_input_buffer(info);
}

JOCTET nextByte(j_decompress_ptr info)
{
    jpeg_source_mgr &source = *info->src;
    fill(source, info);
    --source.bytes_in_buffer;
    return *source.next_input_byte++;
}

void readBytes(j_decompress_ptr info, JOCTET *bytes, std::size_t count)
{
    jpeg_source_mgr &source = *info->src;
    while (count > 0) {
        fill(source, info);
        const std::size_t part = std::min(count, source.bytes_in_buffer);
        bytes = std::copy_n(source.next_input_byte, part, bytes);
        source.next_input_byte += part;
        source.bytes_in_buffer -= part;
        count -= part;
    }
}

} // namespace

void JpegSegments::keepFrom(jpeg_decompress_struct &info)
{
    info.client_data = this;
    for (const int marker : {JPEG_COM, JPEG_APP0 + 1, JPEG_APP0 + 2})
        jpeg_set_marker_processor(&info, marker, &read);
}

boolean JpegSegments::read(j_decompress_ptr info)
{
    auto &segments = *static_cast<JpegSegments *>(info->client_data);
    const unsigned high = nextByte(info);
    const unsigned length = high << 8 | nextByte(info);
    constexpr unsigned ofLength = 2;
    if (length < ofLength) // damaged; there is nothing to pass over
        return TRUE;
    const std::size_t size = length - ofLength;
    if (segments.m_count == most || segments.m_bytes + size > mostBytes) {
        info->src->skip_input_data(info, long(size));
        return TRUE;
    }

    // Goes with the decoder, like all that libjpeg takes.
    auto *const segment = static_cast<jpeg_saved_marker_ptr>(info->mem->alloc_large(
        reinterpret_cast<j_common_ptr>(info), JPOOL_IMAGE, sizeof(jpeg_marker_struct) + size));
    *segment = {.next = nullptr,
                .marker = UINT8(info->unread_marker),
                .original_length = unsigned(size),
                .data_length = unsigned(size),
                .data = reinterpret_cast<JOCTET *>(segment + 1)};
    readBytes(info, segment->data, size);
    (segments.m_last ? segments.m_last->next : info->marker_list) = segment;
    segments.m_last = segment;
    ++segments.m_count;
    segments.m_bytes += size;
    return TRUE;
}

} // namespace lindenreed::device
