// Compiled once for every instruction set that the compiler knows of and chosen when the program runs: what
// UTF8Scan.cpp says about the standard library holds here as well.

#include "TextCore/CandidateScan.h"

// Masks are stored byte by byte, those of the first positions first.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TextCore/CandidateScan.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace quelm::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

bool isAmong(std::uint8_t byte, const std::uint8_t* values) {
    return byte == values[0] || byte == values[1] || byte == values[2] || byte == values[3];
}

void mark(const std::uint8_t* text, std::size_t count, const MatchAnchor& first, const MatchAnchor& second,
          std::uint64_t* masks) {
    for (std::size_t start = 0; start < count; start += positionsPerMask) {
        std::uint64_t mask = 0;
        for (std::size_t bit = 0; bit < positionsPerMask; ++bit) {
            const bool holds = isAmong(text[start + bit + first.offset], first.values) &&
                               isAmong(text[start + bit + second.offset], second.values);
            mask |= std::uint64_t{holds} << bit;
        }
        masks[start / positionsPerMask] = mask;
    }
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::CappedTag<std::uint8_t, positionsPerMask>;
using Vector = hn::Vec<Bytes>;

struct OneValue {
    explicit OneValue(const std::uint8_t* values) : value(hn::Set(Bytes(), values[0])) {}
    auto holdsIn(Vector bytes) const { return hn::Eq(bytes, value); }
    Vector value;
};

struct FourValues {
    explicit FourValues(const std::uint8_t* values)
        : a(hn::Set(Bytes(), values[0])), b(hn::Set(Bytes(), values[1])), c(hn::Set(Bytes(), values[2])),
          d(hn::Set(Bytes(), values[3])) {}
    auto holdsIn(Vector bytes) const {
        return hn::Or(hn::Or(hn::Eq(bytes, a), hn::Eq(bytes, b)), hn::Or(hn::Eq(bytes, c), hn::Eq(bytes, d)));
    }
    Vector a;
    Vector b;
    Vector c;
    Vector d;
};

template <class Values>
void markWith(const std::uint8_t* text, std::size_t count, const MatchAnchor& first, const MatchAnchor& second,
              std::uint64_t* masks) {
    const Bytes d;
    const std::size_t step = hn::Lanes(d);
    const Values firstValues(first.values);
    const Values secondValues(second.values);
    const std::uint8_t* firstBytes = text + first.offset;
    const std::uint8_t* secondBytes = text + second.offset;
    auto* bits = reinterpret_cast<std::uint8_t*>(masks);
    const std::size_t end = (count + positionsPerMask - 1) / positionsPerMask * positionsPerMask;
    for (std::size_t position = 0; position < end; position += step) {
        const auto holds = hn::And(firstValues.holdsIn(hn::LoadU(d, firstBytes + position)),
                                   secondValues.holdsIn(hn::LoadU(d, secondBytes + position)));
        hn::StoreMaskBits(d, holds, bits + position / 8);
    }
}

void mark(const std::uint8_t* text, std::size_t count, const MatchAnchor& first, const MatchAnchor& second,
          std::uint64_t* masks) {
    const auto* a = first.values;
    const auto* b = second.values;
    const bool isOneEach = a[0] == a[1] && a[0] == a[2] && a[0] == a[3] && b[0] == b[1] && b[0] == b[2] && b[0] == b[3];
    if (isOneEach)
        markWith<OneValue>(text, count, first, second, masks);
    else
        markWith<FourValues>(text, count, first, second, masks);
}

#endif

} // namespace
} // namespace quelm::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quelm {

HWY_EXPORT(mark);

void markCandidates(const std::uint8_t* text, std::size_t count, const MatchAnchor& first, const MatchAnchor& second,
                    std::uint64_t* masks) {
    HWY_DYNAMIC_DISPATCH(mark)(text, count, first, second, masks);
}

} // namespace quelm
#endif
