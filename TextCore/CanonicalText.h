#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

/// Texts compared by canonical equivalence (Unicode Standard Annex #15): equal when their NFC forms are
/// equal, ordered by the Unicode scalar values of those forms. Never by locale, never folding case. All
/// functions take well-formed UTF-8 and may be called from any thread. Texts that are equal as
/// bytes, or first differ among ASCII, are settled without normalising; of others only what follows the last
/// ASCII character before the difference is normalised.
namespace quelm::canonical {

bool equal(std::string_view left, std::string_view right);

std::weak_ordering compare(std::string_view left, std::string_view right);

/// Equal for canonically equivalent texts.
std::uint64_t hash(std::string_view text);

/// The NFC form: `text` itself when it is in that form already, else a view of `storage`, which is
/// overwritten and must not hold `text`. Byte order of NFC forms is their scalar order, so they may be
/// compared and hashed as bytes.
std::string_view form(std::string_view text, std::string& storage);

} // namespace quelm::canonical
