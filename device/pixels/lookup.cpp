// Processors look up 16 bytes at once in a table of 16. Here are 16 such tables, of which each byte needs
// one.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lookup.cpp"

#include "lookup.h"

#include <hwy/foreach_target.h>
// After it.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

void lookUpAll(std::uint8_t *bytes, std::size_t count, const ByteTable &table)
{
    // A round of one byte is so short that where its code happens to lie doubles the time.
#pragma GCC unroll 8
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = table[bytes[i]];
}

#else

namespace hn = hwy::HWY_NAMESPACE;

void lookUpAll(std::uint8_t *bytes, std::size_t count, const ByteTable &table)
{
    const hn::ScalableTag<std::uint8_t> tag;
    const hn::RebindToSigned<decltype(tag)> signedTag;
    using Vector = hn::Vec<decltype(tag)>;
    constexpr std::size_t size = hn::MaxLanes(tag);

    // A lookup gives 0 for a negative index. An index that is 16 less from table to table is not negative in
    // all tables up to the byte's own; what these hold is the difference to the one before, so that their sum
    // is the entry.
    Vector differences[16];
    for (std::size_t part = 0; part < 16; ++part) {
        const Vector entries = hn::LoadDup128(tag, table.data() + part * 16);
        const bool isFirst = part % 8 == 0; // of the bytes below 128, and of those above
        differences[part]
            = isFirst ? entries : hn::Xor(entries, hn::LoadDup128(tag, table.data() + part * 16 - 16));
    }
    const auto sixteen = hn::Set(signedTag, 16);
    // Within a table, or negative still. A lookup of x86 looks at these bits alone.
    const auto indexOf = [&](auto shifted) {
        const Vector index = hn::BitCast(tag, shifted);
        return HWY_ARCH_X86 ? index : hn::And(index, hn::Set(tag, 0x8F));
    };
    const auto entriesOf = [&](Vector values) {
        auto lower = hn::BitCast(signedTag, values); // negative from 128 on
        auto upper = hn::BitCast(signedTag, hn::Xor(values, hn::Set(tag, 128)));
        Vector found = hn::Zero(tag);
        for (std::size_t part = 0; part < 8; ++part) {
            found = hn::Xor(found,
                            hn::Xor(hn::TableLookupBytesOr0(differences[part], indexOf(lower)),
                                    hn::TableLookupBytesOr0(differences[part + 8], indexOf(upper))));
            lower = hn::SaturatedSub(lower, sixteen);
            upper = hn::SaturatedSub(upper, sixteen);
        }
        return found;
    };

    std::size_t i = 0;
    for (; i + size <= count; i += size)
        hn::StoreU(entriesOf(hn::LoadU(tag, bytes + i)), tag, bytes + i);
    for (; i < count; ++i)
        bytes[i] = table[bytes[i]];
}

#endif

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lindenreed::pixels {

namespace {

HWY_EXPORT(lookUpAll);

} // namespace

void lookUp(std::uint8_t *bytes, std::size_t count, const ByteTable &table)
{
    HWY_DYNAMIC_DISPATCH(lookUpAll)(bytes, count, table);
}

} // namespace lindenreed::pixels

#endif
