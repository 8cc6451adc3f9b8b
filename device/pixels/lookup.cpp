// Processors look up 16 bytes at once in a table of 16. Here are 16 such tables, of which each byte needs
// one: it is looked up in eight, and those that come after its own give 0.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lookup.cpp"

#include "lookup.h"

#include <cstring>

#include <hwy/foreach_target.h>
// After it.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

HWY_INLINE std::size_t bytesPerRow(const Picture &picture)
{
    return picture.width * static_cast<std::size_t>(picture.bytesPerPixel);
}

HWY_INLINE void lookUpAlone(std::uint8_t *bytes, std::size_t count, const ByteTable &table)
{
    // A round of one byte is so short that where its code happens to lie doubles the time.
#pragma GCC unroll 8
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = table[bytes[i]];
}

// Before SSSE3 there is no such lookup on x86.
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || (HWY_ARCH_X86 && HWY_TARGET > HWY_SSSE3)

void lookUpRows(const Picture &picture, const ByteTable &table)
{
    const std::size_t bytes = bytesPerRow(picture);
    for (std::size_t y = 0; y < picture.height; ++y)
        lookUpAlone(picture.data + y * picture.stride, bytes, table);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

const hn::ScalableTag<std::uint8_t> tag;
const hn::RebindToSigned<decltype(tag)> signedTag;
using Vector = hn::Vec<decltype(tag)>;
constexpr std::size_t size = hn::MaxLanes(tag);

/// Vectors at a time. With AVX2 loading the tables, which do not all fit its registers, is what one would
/// wait for; with less a vector takes longer anyway, and with more there are enough registers.
constexpr std::size_t together = HWY_TARGET == HWY_AVX2 ? 4 : 1;
constexpr std::size_t chunk = together * size; ///< bytes at a time

/**
 * A lookup gives 0 for a negative index. An index that is 16 less from table to table is not negative in all
 * tables up to the byte's own; what these hold is what is to be exclusively or-ed with the one before, so
 * that all together are the entry. The bytes below 128 and those from there on have tables of their own.
 */
struct Tables
{
    HWY_ALIGN std::uint8_t below[8][size];
    HWY_ALIGN std::uint8_t above[8][size];
};

HWY_INLINE void makeTables(const ByteTable &table, Tables &tables)
{
    for (std::size_t part = 0; part < 8; ++part) {
        const auto difference = [&](const std::uint8_t *entries) {
            const Vector own = hn::LoadDup128(tag, entries + part * 16);
            return part == 0 ? own : hn::Xor(own, hn::LoadDup128(tag, entries + part * 16 - 16));
        };
        hn::Store(difference(table.data()), tag, tables.below[part]);
        hn::Store(difference(table.data() + 128), tag, tables.above[part]);
    }
}

/// Within a table, or negative still. A lookup of x86 looks at these bits alone, and the library leaves them
/// as they are.
HWY_INLINE Vector indexOf(hn::Vec<decltype(signedTag)> shifted)
{
    const Vector index = hn::BitCast(tag, shifted);
    return HWY_ARCH_X86 ? index : hn::And(index, hn::Set(tag, 0x8F));
}

/// Lets the compiler forget where values come from: GCC would load them anew for each use.
HWY_INLINE void keep([[maybe_unused]] Vector &values)
{
#if HWY_ARCH_X86
    asm("" : "+v"(values.raw));
#endif
}

/// The entries of a chunk.
HWY_INLINE void lookUpChunk(const std::uint8_t *from, const Tables &tables, std::uint8_t *to)
{
    Vector bytes[together];
    hn::Vec<decltype(signedTag)> shifted[together];
    Vector below[together];
    Vector above[together];
    for (std::size_t i = 0; i < together; ++i) {
        bytes[i] = hn::LoadU(tag, from + i * size);
        shifted[i] = hn::BitCast(signedTag, hn::And(bytes[i], hn::Set(tag, 127)));
        below[i] = above[i] = hn::Zero(tag);
    }
    // Else GCC keeps the tables in registers, and puts what it works with into memory.
#pragma GCC unroll(together == 1 ? 8 : 1)
    for (std::size_t part = 0; part < 8; ++part) {
        Vector tableBelow = hn::Load(tag, tables.below[part]);
        Vector tableAbove = hn::Load(tag, tables.above[part]);
        keep(tableBelow);
        keep(tableAbove);
        for (std::size_t i = 0; i < together; ++i) {
            const Vector index = indexOf(shifted[i]);
            below[i] = hn::Xor(below[i], hn::TableLookupBytesOr0(tableBelow, index));
            above[i] = hn::Xor(above[i], hn::TableLookupBytesOr0(tableAbove, index));
            shifted[i] = hn::Sub(shifted[i], hn::Set(signedTag, 16));
        }
    }
    for (std::size_t i = 0; i < together; ++i) {
        const auto isAbove = hn::Lt(hn::BitCast(signedTag, bytes[i]), hn::Zero(signedTag));
        hn::StoreU(hn::IfThenElse(hn::RebindMask(tag, isAbove), above[i], below[i]), tag, to + i * size);
    }
}

void lookUpRows(const Picture &picture, const ByteTable &table)
{
    Tables tables;
    makeTables(table, tables);
    const std::size_t bytes = bytesPerRow(picture);
    for (std::size_t y = 0; y < picture.height; ++y) {
        std::uint8_t *const row = picture.data + y * picture.stride;
        if (bytes < chunk) {
            lookUpAlone(row, bytes, table);
            continue;
        }
        // Those at the end first, before others that they overlap are replaced.
        std::uint8_t *const end = row + bytes - chunk;
        std::uint8_t last[chunk];
        lookUpChunk(end, tables, last);
        for (std::uint8_t *next = row; next < end; next += chunk)
            lookUpChunk(next, tables, next);
        std::memcpy(end, last, chunk);
    }
}

#endif

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lindenreed::pixels {

namespace {

HWY_EXPORT(lookUpRows);

} // namespace

void lookUp(const Picture &picture, const ByteTable &table)
{
    HWY_DYNAMIC_DISPATCH(lookUpRows)(picture, table);
}

} // namespace lindenreed::pixels

#endif
