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

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

constexpr bool isLittleEndian = std::endian::native == std::endian::little;

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

constexpr std::ptrdiff_t lanes = 8;

typedef std::int16_t Lanes __attribute__((vector_size(lanes * sizeof(std::int16_t))));

HWY_INLINE Lanes constant(int value)
{
    return static_cast<std::int16_t>(value) - Lanes{};
}

/// 0, 1, 2 ..
HWY_INLINE Lanes ramp()
{
    return Lanes{0, 1, 2, 3, 4, 5, 6, 7};
}

/// At any address.
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

/// Gives each 16 bytes to where `to` says, by their number.
template <typename Where>
HWY_INLINE void storeColumns(Lanes values, Where to)
{
    store(values, to(0));
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

typedef int Wide __attribute__((vector_size(lanes * sizeof(int))));

/// What is too much for 16 bits becomes the most they hold.
HWY_INLINE Lanes saturatedSum(Lanes left, Lanes right)
{
#ifdef __SSE2__
    return reinterpret_cast<Lanes>(
        _mm_adds_epi16(reinterpret_cast<__m128i>(left), reinterpret_cast<__m128i>(right)));
#else
    const Wide sum = __builtin_convertvector(left, Wide) + __builtin_convertvector(right, Wide);
    const Wide upTo = sum < 32767 ? sum : Wide{} + 32767;
    return __builtin_convertvector(upTo > -32768 ? upTo : Wide{} - 32768, Lanes);
#endif
}

/// The upper 16 bits of the products.
HWY_INLINE Lanes highProduct(Lanes left, Lanes right)
{
#ifdef __SSE2__
    return reinterpret_cast<Lanes>(
        _mm_mulhi_epi16(reinterpret_cast<__m128i>(left), reinterpret_cast<__m128i>(right)));
#else
    return __builtin_convertvector(
        __builtin_convertvector(left, Wide) * __builtin_convertvector(right, Wide) >> 16, Lanes);
#endif
}

/// `values` where no bit of `mask` is set, else 0.
HWY_INLINE Lanes cleared(Lanes mask, Lanes values)
{
    return values & ~mask;
}

/// Two lines of levels, in steps of 2048, as greys, 17 for each level: a byte from either in turn.
HWY_INLINE Lanes greysOf(Lanes first, Lanes second)
{
    const Lanes both = isLittleEndian ? first >> 11 | second >> 3 : first >> 3 | second >> 11;
    return both | both << 4;
}

/// All bits set where they are equal, else none.
HWY_INLINE Lanes whereEqual(Lanes left, Lanes right)
{
    return left == right;
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
    return reinterpret_cast<Lanes>(isLittleEndian ? here >> 16 | further << 48 : here << 16 | further >> 48);
}

/// The first halves of both, a lane from either in turn; from 16 bytes to 16 bytes.
HWY_INLINE Lanes firstHalves(Lanes left, Lanes right)
{
    return __builtin_shufflevector(left, right, 0, 8, 1, 9, 2, 10, 3, 11);
}

HWY_INLINE Lanes secondHalves(Lanes left, Lanes right)
{
    return __builtin_shufflevector(left, right, 4, 12, 5, 13, 6, 14, 7, 15);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<std::int16_t, 16>;
using Lanes = hn::Vec<Tag>;

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

template <typename Vector, typename Where>
HWY_INLINE void storeColumns(Vector values, Where to)
{
    const hn::Full128<std::uint8_t> column;
    const auto bytes = hn::BitCast(hn::Repartition<std::uint8_t, Tag>(), values);
    if constexpr (sizeof(Vector) == 16) {
        hn::StoreU(bytes, column, to(0));
    } else {
        hn::StoreU(hn::LowerHalf(column, bytes), column, to(0));
        hn::StoreU(hn::UpperHalf(column, bytes), column, to(1));
    }
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

HWY_INLINE Lanes saturatedSum(Lanes left, Lanes right)
{
    return hn::SaturatedAdd(left, right);
}

HWY_INLINE Lanes cleared(Lanes mask, Lanes values)
{
    return hn::AndNot(mask, values);
}

HWY_INLINE Lanes highProduct(Lanes left, Lanes right)
{
    return hn::MulHigh(left, right);
}

HWY_INLINE Lanes greysOf(Lanes first, Lanes second)
{
    const Lanes both = isLittleEndian ? hn::ShiftRight<11>(first) | hn::ShiftRight<3>(second)
                                      : hn::ShiftRight<3>(first) | hn::ShiftRight<11>(second);
    return both | hn::ShiftLeft<4>(both);
}

HWY_INLINE Lanes whereEqual(Lanes left, Lanes right)
{
    return hn::VecFromMask(Tag(), hn::Eq(left, right));
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

HWY_INLINE Lanes firstHalves(Lanes left, Lanes right)
{
    return hn::InterleaveLower(Tag(), left, right);
}

HWY_INLINE Lanes secondHalves(Lanes left, Lanes right)
{
    return hn::InterleaveUpper(Tag(), left, right);
}

#endif

/// Lets the compiler forget what it knows of the values there.
HWY_INLINE void hide(void *values)
{
    asm volatile("" : : "r"(values) : "memory");
}

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#endif
