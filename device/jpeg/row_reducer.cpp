#include "row_reducer.h"

#include "row_sums.h"

namespace lindenreed::device {

namespace {

std::size_t roundedUp(std::size_t number, std::size_t unit)
{
    return (number + unit - 1) / unit * unit;
}

} // namespace

RowReducer::RowReducer(Size source, Extent extent, Size reduced, int channels, std::span<std::uint8_t> target,
                       std::size_t stride)
    : m_channels(channels)
    , m_targetHeight(reduced.height)
    , m_down(source.height, extent.height, reduced.height)
    , m_across(source.width, extent.width, reduced.width)
    , m_rowBytes(roundedUp(std::size_t(source.width) * std::size_t(channels), mixedAtOnce))
    , m_target(target)
    , m_stride(stride)
    , m_rows(m_rowBytes * std::size_t(m_down.count))
    , m_mixedRows(std::size_t(m_down.count))
    , m_mixed(m_rowBytes + std::size_t(m_across.count * channels))
{
}

std::uint8_t *RowReducer::nextRow()
{
    return m_rows.data() + std::size_t(m_added % m_down.count) * m_rowBytes;
}

void RowReducer::add()
{
    ++m_added;
    while (m_written < m_targetHeight) {
        // Weights beyond the picture are 0, and the rows there are any.
        const auto mine
            = std::span(m_down.weights)
                  .subspan(std::size_t(m_written) * std::size_t(m_down.count), std::size_t(m_down.count));
        int last = m_down.count;
        while (mine[std::size_t(last - 1)] == 0)
            --last;
        if (m_down.first[std::size_t(m_written)] + last > m_added)
            return;
        writeRow();
        ++m_written;
    }
}

void RowReducer::writeRow()
{
    const auto count = std::size_t(m_down.count);
    const auto first = std::size_t(m_down.first[std::size_t(m_written)]);
    for (std::size_t tap = 0; tap < count; ++tap)
        m_mixedRows[tap] = m_rows.data() + (first + tap) % count * m_rowBytes;
    mixRows(m_mixedRows, m_down.weights.data() + std::size_t(m_written) * count, m_rowBytes, m_mixed.data());
    const std::span target = m_target.subspan(std::size_t(m_written) * m_stride);
    if (m_channels == 1)
        reduceGreys(m_mixed.data(), m_across, target.data());
    else
        reducePixels(m_mixed.data(), m_across, target.data());
}

} // namespace lindenreed::device
