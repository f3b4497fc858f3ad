#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

/// Texts compared by canonical equivalence (Unicode Standard Annex #15): equal when their NFC forms are
/// equal, ordered by the Unicode scalar values of those forms. Never by locale, never folding case. All
/// functions take well-formed UTF-8 and may be called from any thread.
namespace quelm::canonical {

/// What the texts begin with in common is compared as bytes, and nothing at all of one text in one place of memory.
/// From the first difference on as much is read as tells the texts apart: as a rule that character alone, and no more
/// than the run of marks that it is in, however long the texts are. O(n) for equivalent texts.
bool equal(std::string_view left, std::string_view right);

/// Likewise, but the forms are made, a kilobyte or so at a time, from the last place before the first difference where
/// the form of a text may be cut up to the first difference of the forms.
std::weak_ordering compare(std::string_view left, std::string_view right);

/// Equal for canonically equivalent texts.
std::uint64_t hash(std::string_view text);

/// The NFC form: `text` itself when it is in that form already, else a view of `storage`, which is
/// overwritten and must not hold `text`. Byte order of NFC forms is their scalar order, so they may be
/// compared and hashed as bytes.
std::string_view form(std::string_view text, std::string& storage);

} // namespace quelm::canonical
