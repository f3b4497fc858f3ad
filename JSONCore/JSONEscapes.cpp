#include "JSONCore/JSONEscapes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

// This file is compiled once for every instruction set that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "JSONCore/JSONEscapes.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace quelm::json::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

bool holdsEscaped(const char* text, std::size_t size) {
    const hn::CappedTag<std::uint8_t, 32> d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t at = 0;
    for (; size - at >= lanes; at += lanes) {
        const auto bytes = hn::LoadU(d, reinterpret_cast<const std::uint8_t*>(text) + at);
        const auto isControl = hn::Eq(hn::Min(bytes, hn::Set(d, 0x1F)), bytes);
        const auto isQuoteOrBackslash = hn::Or(hn::Eq(bytes, hn::Set(d, '"')), hn::Eq(bytes, hn::Set(d, '\\')));
        if (!hn::AllFalse(d, hn::Or(isControl, isQuoteOrBackslash)))
            return true;
    }
    return std::any_of(text + at, text + size, [](char c) { return needsEscape(static_cast<unsigned char>(c)); });
}

} // namespace quelm::json::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quelm::json {

HWY_EXPORT(holdsEscaped);

bool needsEscape(std::string_view text) {
    return HWY_DYNAMIC_DISPATCH(holdsEscaped)(text.data(), text.size());
}

} // namespace quelm::json

#endif
