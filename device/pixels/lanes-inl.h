// The few operations on vectors of 16-bit numbers that the diffusion needs, for the instruction set that is
// being compiled. They are Highway's; where it has no vectors, as on the oldest processors, they are the
// compiler's own.

// Read once for each instruction set.
#if defined(SLATE_PIXELS_LANES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef SLATE_PIXELS_LANES_INL_H
#undef SLATE_PIXELS_LANES_INL_H
#else
#define SLATE_PIXELS_LANES_INL_H
#endif

#include <hwy/highway.h>

#include <bit>
#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

constexpr std::ptrdiff_t lanes = 8;

typedef std::int16_t Lanes __attribute__((vector_size(lanes * sizeof(std::int16_t))));
typedef std::uint8_t Bytes __attribute__((vector_size(16)));
typedef std::uint8_t HalfBytes __attribute__((vector_size(lanes)));

HWY_INLINE Lanes constant(int value)
{
    return static_cast<std::int16_t>(value) - Lanes{};
}

/// 0, 1, 2 ..
HWY_INLINE Lanes ramp()
{
    return Lanes{0, 1, 2, 3, 4, 5, 6, 7};
}

/// Lanes or Bytes, at any address.
template <typename Vector>
HWY_INLINE Vector load(const void *from)
{
    Vector values;
    __builtin_memcpy(&values, from, sizeof values);
    return values;
}

template <typename Vector>
HWY_INLINE void store(Vector values, void *to)
{
    __builtin_memcpy(to, &values, sizeof values);
}

HWY_INLINE void storeAsBytes(Lanes values, std::uint8_t *to)
{
    const auto bytes = __builtin_convertvector(values, HalfBytes);
    __builtin_memcpy(to, &bytes, sizeof bytes);
}

/// What is too much for 16 bits wraps around.
HWY_INLINE Lanes wrappingSum(Lanes left, Lanes right)
{
    typedef std::uint16_t Unsigned __attribute__((vector_size(sizeof(Lanes))));
    return reinterpret_cast<Lanes>(reinterpret_cast<Unsigned>(left) + reinterpret_cast<Unsigned>(right));
}

HWY_INLINE Lanes least(Lanes left, Lanes right)
{
    return left < right ? left : right;
}

HWY_INLINE Lanes greatest(Lanes left, Lanes right)
{
    return left > right ? left : right;
}

/// All bits set where a value is negative, else none.
HWY_INLINE Lanes whereNegative(Lanes values)
{
    return values < 0;
}

/// values * share / 16, rounded down. Products fit 16 bits: for a share of 7, values up to 4681.
HWY_INLINE Lanes sixteenths(Lanes values, int share)
{
    return values * constant(share) >> 4;
}

/// values * 27 / 2048, rounded down.
HWY_INLINE Lanes twentySevenOf2048(Lanes values)
{
    return ((values >> 5) * constant(27) + ((values & constant(31)) * constant(27) >> 5)) >> 6;
}

/// values * 17 / 2048, for multiples of 2048.
HWY_INLINE Lanes seventeenOf2048(Lanes values)
{
    return (values >> 7) + (values >> 11);
}

/// All bits set where a value is 0, else none.
HWY_INLINE Lanes whereZero(Lanes values)
{
    return values == 0;
}

/// The lanes of `values`, each in the lane before; the last one gets the first of `next`.
HWY_INLINE Lanes moved(Lanes next, Lanes values)
{
    // In halves, since not every processor can do it at once.
    typedef std::uint64_t Halves __attribute__((vector_size(sizeof(Lanes))));
    const auto here = reinterpret_cast<Halves>(values);
    const Halves further = __builtin_shufflevector(here, reinterpret_cast<Halves>(next), 1, 2);
    if constexpr (std::endian::native == std::endian::little)
        return reinterpret_cast<Lanes>(here >> 16 | further << 48);
    else
        return reinterpret_cast<Lanes>(here << 16 | further >> 48);
}

/// The first halves of both, a byte from either in turn.
HWY_INLINE Bytes firstHalves(Bytes left, Bytes right)
{
    return __builtin_shufflevector(left, right, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}

HWY_INLINE Bytes secondHalves(Bytes left, Bytes right)
{
    return __builtin_shufflevector(left, right, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<std::int16_t, 16>;
using Lanes = hn::Vec<Tag>;
using ByteTag = hn::Full128<std::uint8_t>;
using Bytes = hn::Vec<ByteTag>;

constexpr std::ptrdiff_t lanes = hn::MaxLanes(Tag());

HWY_INLINE Lanes constant(int value)
{
    return hn::Set(Tag(), static_cast<std::int16_t>(value));
}

HWY_INLINE Lanes ramp()
{
    return hn::Iota(Tag(), std::int16_t(0));
}

template <typename Vector>
HWY_INLINE Vector load(const hn::TFromV<Vector> *from)
{
    return hn::LoadU(hn::DFromV<Vector>(), from);
}

template <typename Vector>
HWY_INLINE void store(Vector values, hn::TFromV<Vector> *to)
{
    hn::StoreU(values, hn::DFromV<Vector>(), to);
}

HWY_INLINE void storeAsBytes(Lanes values, std::uint8_t *to)
{
    const hn::Rebind<std::uint8_t, Tag> narrow;
    hn::StoreU(hn::DemoteTo(narrow, values), narrow, to);
}

HWY_INLINE Lanes wrappingSum(Lanes left, Lanes right)
{
    return left + right;
}

HWY_INLINE Lanes least(Lanes left, Lanes right)
{
    return hn::Min(left, right);
}

HWY_INLINE Lanes greatest(Lanes left, Lanes right)
{
    return hn::Max(left, right);
}

HWY_INLINE Lanes whereNegative(Lanes values)
{
    return hn::BroadcastSignBit(values);
}

HWY_INLINE Lanes sixteenths(Lanes values, int share)
{
    return hn::MulHigh(values, constant(share << 12));
}

HWY_INLINE Lanes twentySevenOf2048(Lanes values)
{
    return hn::MulHigh(values, constant(27 << 5));
}

HWY_INLINE Lanes seventeenOf2048(Lanes values)
{
    return hn::MulHigh(values, constant(17 << 5));
}

HWY_INLINE Lanes whereZero(Lanes values)
{
    return hn::VecFromMask(Tag(), hn::Eq(values, hn::Zero(Tag())));
}

HWY_INLINE Lanes moved(Lanes next, Lanes values)
{
    const Tag tag;
    if constexpr (lanes == 8)
        return hn::CombineShiftRightBytes<2>(tag, next, values);
    else
        return hn::CombineShiftRightBytes<2>(tag, hn::ConcatLowerUpper(tag, next, values), values);
}

HWY_INLINE Bytes firstHalves(Bytes left, Bytes right)
{
    return hn::InterleaveLower(ByteTag(), left, right);
}

HWY_INLINE Bytes secondHalves(Bytes left, Bytes right)
{
    return hn::InterleaveUpper(ByteTag(), left, right);
}

#endif

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#endif
