// Makes a picture smaller while its rows come in.

#pragma once

#include "reducing_taps.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lindenreed::device {

/// Reduces by a windowed sinc, first the height and then the width, in fixed point; holds the few source rows
/// that a target row is made of. Flat fields keep their value. Neither length grows, and none is 0.
class RowReducer
{
public:
    struct Size
    {
        int width = 0;
        int height = 0;
    };
    struct Extent
    {
        double width = 0;
        double height = 0;
    };
    /// `extent` is the part of `source` that the picture takes: it may end within the last column and row.
    /// `channels` bytes a pixel, 1 or 4. `target` has `stride` bytes from row to row and is borrowed.
    RowReducer(Size source, Extent extent, Size reduced, int channels, std::span<std::uint8_t> target,
               std::size_t stride);

    /// Where the next source row goes, before add().
    std::uint8_t *nextRow();
    void add();

private:
    void writeRow();

    const int m_channels;
    const int m_targetHeight;
    const ReducingTaps m_down;
    const ReducingTaps m_across;
    const std::size_t m_rowBytes; ///< of a source row, rounded up to whole blocks
    std::span<std::uint8_t> m_target;
    const std::size_t m_stride;
    std::vector<std::uint8_t> m_rows; ///< the last `m_down.count` ones, in turn
    std::vector<const std::uint8_t *> m_mixedRows;
    std::vector<std::int16_t> m_mixed; ///< one row of the target's height, with further bits
    int m_added = 0;
    int m_written = 0;
};

} // namespace lindenreed::device
