// Makes a picture smaller while its rows come in.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lindenreed::device {

/// The weights by which one direction is reduced: each target pixel is a sum over `count` source pixels.
struct ReducingTaps
{
    /// `extent`: how much of the source pixels the picture takes, which may end within the last one.
    ReducingTaps(int sourceLength, double extent, int targetLength);

    int count = 0;
    std::vector<int> first; ///< source pixel of each target pixel's first weight
    std::vector<std::int16_t> weights; ///< `count` for each target pixel, whose sum is `one`
    static constexpr int bits = 14;
    static constexpr int one = 1 << bits;
};

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
    void mixRows(int row);
    void writeRow(int row);

    const int m_channels;
    const int m_targetWidth;
    const int m_targetHeight;
    const ReducingTaps m_down;
    const ReducingTaps m_across;
    const std::size_t m_rowBytes; ///< of a source row, rounded up to whole blocks
    std::span<std::uint8_t> m_target;
    const std::size_t m_stride;
    std::vector<std::uint8_t> m_rows; ///< the last `m_down.count` ones, in turn
    std::vector<std::int32_t> m_sums;
    std::vector<std::int16_t> m_mixed; ///< one row of the target's height, with further bits
    int m_added = 0;
    int m_written = 0;
};

} // namespace lindenreed::device
