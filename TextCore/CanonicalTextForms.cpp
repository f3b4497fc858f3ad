#include "TextCore/CanonicalTextForms.h"

#include "TextCore/Check.h"
#include "TextCore/UTF8.h"
#include "TextCore/UTF8Scan.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace quelm::canonical {

namespace {

/// Pieces end at the first boundary from this many bytes.
constexpr std::size_t pieceSize = 1024;

/// ICU puts marks in order by insertion, at a cost that grows with the square of their number: it is given no more than
/// this many bytes that may be out of order.
constexpr std::size_t mostForInsertion = 2 * pieceSize;

/// ICU counts in 32 bits, and a decomposition may take three times the bytes.
constexpr std::size_t longestPiece = std::size_t{1} << 29;

const icu::Normalizer2& nfc() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
    require(U_SUCCESS(status), "ICU has its data of normalisation");
    return *normalizer;
}

icu::StringPiece pieceOf(std::string_view part) {
    return icu::StringPiece(part.data(), static_cast<std::int32_t>(part.size()));
}

std::size_t nextCharacterStart(std::string_view text, std::size_t position) {
    while (position < text.size() && U8_IS_TRAIL(text[position]))
        ++position;
    return position;
}

std::string_view leadingPiece(std::string_view text) {
    if (text.size() <= pieceSize)
        return text;
    std::size_t end = nextCharacterStart(text, pieceSize);
    while (end < longestPiece && !hasBoundaryAt(text, end))
        end = nextCharacterStart(text, end + 1);
    return text.substr(0, end);
}

bool isInForm(std::string_view piece) {
    UErrorCode status = U_ZERO_ERROR;
    const bool isNormalized = nfc().isNormalizedUTF8(pieceOf(piece), status);
    require(U_SUCCESS(status), "ICU tells whether a text is normalised");
    return isNormalized;
}

std::string normalized(std::string_view piece) {
    std::string form;
    UErrorCode status = U_ZERO_ERROR;
    icu::StringByteSink<std::string> sink(&form);
    nfc().normalizeUTF8(0, pieceOf(piece), sink, nullptr, status);
    require(U_SUCCESS(status), "ICU normalises a text");
    return form;
}

/// The piece decomposed, its marks in canonical order.
std::string decomposed(std::string_view piece) {
    struct Part {
        UChar32 scalar;
        std::uint8_t combiningClass;
    };
    std::vector<Part> parts;
    const auto append = [&](UChar32 scalar) { parts.push_back({scalar, u_getCombiningClass(scalar)}); };
    icu::UnicodeString decomposition;
    while (!piece.empty()) {
        const auto [leading, size] = utf8::leadingScalar(piece);
        piece.remove_prefix(size);
        const auto scalar = static_cast<UChar32>(leading);
        if (!nfc().getDecomposition(scalar, decomposition)) {
            append(scalar);
            continue;
        }
        for (std::int32_t at = 0; at < decomposition.length(); at = decomposition.moveIndex32(at, 1))
            append(decomposition.char32At(at));
    }

    const auto isMark = [](const Part& part) { return part.combiningClass != 0; };
    for (auto marks = std::ranges::find_if(parts, isMark); marks != parts.end();) {
        const auto end = std::find_if_not(marks, parts.end(), isMark);
        std::stable_sort(marks, end, [](Part left, Part right) { return left.combiningClass < right.combiningClass; });
        marks = std::find_if(end, parts.end(), isMark);
    }

    std::string text;
    for (const Part& part : parts)
        utf8::append(text, static_cast<char32_t>(part.scalar));
    return text;
}

} // namespace

std::size_t commonPrefixLength(std::string_view left, std::string_view right) {
    const std::size_t size = std::min(left.size(), right.size());
    if (left.data() == right.data())
        return size;
    std::size_t position = 0;
    // Large steps are as fast as memory is, small ones find the place.
    for (const std::size_t step : {std::size_t{4096}, sizeof(std::uint64_t)}) {
        while (size - position >= step && std::memcmp(left.data() + position, right.data() + position, step) == 0)
            position += step;
    }
    while (position < size && left[position] == right[position])
        ++position;
    return position;
}

std::size_t sharedCharacterStart(std::string_view left, std::string_view right, std::size_t position) {
    const auto isWithinCharacter = [&](std::string_view text) {
        return position < text.size() && U8_IS_TRAIL(text[position]);
    };
    while (position > 0 && (isWithinCharacter(left) || isWithinCharacter(right)))
        --position;
    return position;
}

bool hasBoundaryAt(std::string_view text, std::size_t position) {
    if (position >= text.size() || U8_IS_SINGLE(text[position]))
        return true;
    return nfc().hasBoundaryBefore(static_cast<UChar32>(utf8::leadingScalar(text.substr(position)).scalar));
}

std::string_view FormPieces::next() {
    // Characters below the first mark stand in the form as they are. The last of some may be joined by what follows.
    std::size_t low = utf8::lowPrefixLength(rest_);
    if (low < rest_.size() && low > 0) {
        do
            --low;
        while (U8_IS_TRAIL(rest_[low]));
    }
    if (low > 0) {
        const std::string_view piece = rest_.substr(0, low);
        rest_.remove_prefix(low);
        return piece;
    }
    const std::string_view piece = leadingPiece(rest_);
    rest_.remove_prefix(piece.size());
    if (piece.size() <= mostForInsertion) {
        if (isInForm(piece))
            return piece;
        storage_ = normalized(piece);
    } else {
        storage_ = normalized(decomposed(piece));
    }
    return storage_ == piece ? piece : std::string_view(storage_);
}

} // namespace quelm::canonical
