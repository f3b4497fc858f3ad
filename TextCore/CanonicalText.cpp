#include "TextCore/CanonicalText.h"

#include "TextCore/Check.h"
#include "TextCore/UTF8.h"
#include "TextCore/UTF8Scan.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>

// Normalising needs to see no further than from one normalisation boundary to the next: the form of a text is
// the forms of its parts where it is cut before a character that never joins what precedes it. No ASCII
// character does, so texts are compared from the last ASCII character before they differ.

namespace quelm::canonical {

namespace {

const icu::Normalizer2& nfc() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
    require(U_SUCCESS(status), "ICU has its data of normalisation");
    return *normalizer;
}

/// A part of the text that ICU, which counts in 32 bits, can take: all of it, or up to the first
/// normalisation boundary from 1 GiB. After another half without one, in what nobody would call text, it is
/// cut between two characters.
std::string_view leadingPart(std::string_view text) {
    constexpr std::size_t enough = std::size_t{1} << 30;
    constexpr std::size_t most = enough + enough / 2;
    if (text.size() <= enough)
        return text;
    std::size_t end = enough;
    while (end < text.size() && U8_IS_TRAIL(text[end]))
        ++end;
    while (end < std::min(text.size(), most)) {
        const auto [scalar, size] = utf8::leadingScalar(text.substr(end));
        if (nfc().hasBoundaryBefore(static_cast<UChar32>(scalar)))
            break;
        end += size;
    }
    return text.substr(0, end);
}

icu::StringPiece pieceOf(std::string_view part) {
    return icu::StringPiece(part.data(), static_cast<std::int32_t>(part.size()));
}

bool isInForm(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    while (!text.empty()) {
        const std::string_view part = leadingPart(text);
        const bool partIsInForm = nfc().isNormalizedUTF8(pieceOf(part), status);
        require(U_SUCCESS(status), "ICU tells whether a text is normalised");
        if (!partIsInForm)
            return false;
        text.remove_prefix(part.size());
    }
    return true;
}

bool isASCIIAt(std::string_view text, std::size_t position) {
    return position < text.size() && U8_IS_SINGLE(text[position]);
}

/// How many leading bytes are the same, eight at a time.
std::size_t commonPrefixLength(std::string_view left, std::string_view right) {
    const std::size_t size = std::min(left.size(), right.size());
    std::size_t position = 0;
    for (; size - position >= sizeof(std::uint64_t); position += sizeof(std::uint64_t)) {
        if (std::memcmp(left.data() + position, right.data() + position, sizeof(std::uint64_t)) != 0)
            break;
    }
    while (position < size && left[position] == right[position])
        ++position;
    return position;
}

/// Whether what stands at `position` is in the text's form as it is, with a boundary before it: its end, or
/// an ASCII character that no mark can follow.
bool isSettledAt(std::string_view text, std::size_t position) {
    if (position == text.size())
        return true;
    return isASCIIAt(text, position) && (position + 1 == text.size() || isASCIIAt(text, position + 1));
}

std::weak_ordering compareForms(std::string_view left, std::string_view right) {
    std::string leftStorage;
    std::string rightStorage;
    return form(left, leftStorage) <=> form(right, rightStorage);
}

} // namespace

bool equal(std::string_view left, std::string_view right) {
    return compare(left, right) == 0;
}

std::weak_ordering compare(std::string_view left, std::string_view right) {
    const std::size_t same = commonPrefixLength(left, right);
    if (same == left.size() && same == right.size())
        return std::weak_ordering::equivalent;
    if (isSettledAt(left, same) && isSettledAt(right, same))
        return left.substr(same, 1) <=> right.substr(same, 1);

    std::size_t start = same;
    while (start > 0 && !(isASCIIAt(left, start) && isASCIIAt(right, start)))
        --start;
    return compareForms(left.substr(start), right.substr(start));
}

std::uint64_t hash(std::string_view text) {
    std::string storage;
    return std::hash<std::string_view>{}(form(text, storage));
}

std::string_view form(std::string_view text, std::string& storage) {
    if (utf8::isASCII(text) || isInForm(text))
        return text;

    UErrorCode status = U_ZERO_ERROR;
    storage.clear();
    icu::StringByteSink<std::string> sink(&storage);
    while (!text.empty()) {
        const std::string_view part = leadingPart(text);
        nfc().normalizeUTF8(0, pieceOf(part), sink, nullptr, status);
        require(U_SUCCESS(status), "ICU normalises a text");
        text.remove_prefix(part.size());
    }
    return storage;
}

} // namespace quelm::canonical
