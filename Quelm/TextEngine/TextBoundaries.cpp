#include "Quelm/TextEngine/TextBoundaries.h"

#include "TextCore/Graphemes.h"
#include "TextCore/TextRope.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

// The rules of clusters look back as far as the start of a cluster, so they are asked about a window that begins at a
// boundary which needs no rules, near the place. The window grows until it has one, and until it has the end of the
// cluster after the place; at its largest it is taken as it is.

namespace quelm::boundaries {

namespace {

/// How far a window goes to either side of its place, in units.
constexpr std::array<qint64, 3> reaches{64, 512, 4096};

/// Whether nothing joins the character to another one of these, except CR LF.
bool isPlain(char16_t unit) {
    return unit < 0x0300                         // Latin
           || (0x0400 <= unit && unit < 0x0483)  // Cyrillic
           || (0x3041 <= unit && unit < 0x3097)  // Hiragana
           || (0x30A1 <= unit && unit < 0x30FB)  // Katakana
           || (0x4E00 <= unit && unit < 0xA000)  // ideographs
           || (0xAC00 <= unit && unit < 0xD7A4); // Hangul syllables
}

/// The last place between the first unit and the last one where a cluster surely begins; 0 when there is none.
std::size_t lastSureBoundary(std::u16string_view units) {
    for (std::size_t place = units.size(); place-- > 1;)
        if (isPlain(units[place - 1]) && isPlain(units[place]) && units.substr(place - 1, 2) != u"\r\n")
            return place;
    return 0;
}

/// The boundaries about a place, in units.
struct Neighbours {
    /// The place, at the start of its surrogate pair if it was within one.
    qint64 place;
    /// The last boundary before it, that at it or else before it, and the first one after it.
    qint64 previous;
    qint64 start;
    qint64 next;
};

Neighbours neighbours(const TextRope& text, qint64 offset) {
    const TextSummary place = text.summaryBeforeUTF16(offset);
    for (const qint64 reach : reaches) {
        const bool isLast = reach == reaches.back();
        TextSummary start = text.summaryBeforeUTF16(std::max<qint64>(place.utf16 - reach, 0));
        const qint64 end = text.summaryBeforeUTF16(std::min<qint64>(place.utf16 + reach, text.utf16Count())).bytes;
        const std::size_t sure = lastSureBoundary(text.utf16(ByteRange::between(start.bytes, place.bytes)));
        if (sure == 0 && start.bytes > 0 && !isLast)
            continue;
        start = text.summaryBeforeUTF16(start.utf16 + static_cast<qint64>(sure));
        const std::string bytes = text.bytes(ByteRange::between(start.bytes, end));
        const auto at = static_cast<std::size_t>(place.bytes - start.bytes);

        // Boundaries up to the place do not depend on what is after it.
        const std::int64_t before = graphemes::count(std::string_view(bytes).substr(0, at));
        const std::size_t reached = graphemes::prefix(bytes, before).size();
        const std::size_t previous = graphemes::prefix(bytes, std::max<std::int64_t>(before - 1, 0)).size();
        const std::size_t next = reached > at ? reached : graphemes::prefix(bytes, before + 1).size();
        if (next == bytes.size() && end < text.byteCount() && !isLast)
            continue;
        const auto units = [&](std::size_t position) {
            return text.summaryBefore(start.bytes + static_cast<qint64>(position)).utf16;
        };
        const qint64 previousUnits = units(previous);
        return {place.utf16, previousUnits, reached > at ? previousUnits : place.utf16, units(next)};
    }
    return {};
}

/// The characters of a stretch that is no longer than a window.
std::u32string scalars(const TextRope& text, TextRange range) {
    const std::u16string units = text.utf16(
        ByteRange::between(text.summaryBeforeUTF16(range.location).bytes, text.summaryBeforeUTF16(range.end()).bytes));
    std::u32string result;
    for (const char16_t unit : units)
        if (QChar::isLowSurrogate(unit))
            result.back() = QChar::surrogateToUcs4(static_cast<char16_t>(result.back()), unit);
        else
            result += unit;
    return result;
}

bool isRegionalIndicator(char32_t scalar) {
    return 0x1F1E6 <= scalar && scalar <= 0x1F1FF;
}

bool isVariationSelector(char32_t scalar) {
    return (0xFE00 <= scalar && scalar <= 0xFE0F) || (0xE0100 <= scalar && scalar <= 0xE01EF);
}

/// Whether the character makes an emoji sequence of what is before it: joiner, emoji style, keycap, skin tone, tag.
bool makesEmojiSequence(char32_t scalar) {
    return scalar == 0x200D || scalar == 0xFE0F || scalar == 0x20E3 || (0x1F3FB <= scalar && scalar <= 0x1F3FF) ||
           (0xE0020 <= scalar && scalar <= 0xE007F);
}

/// Whether the characters of a cluster come and go together.
bool isOneThing(std::u32string_view cluster) {
    if (cluster == U"\r\n" || isRegionalIndicator(cluster.front()))
        return true;
    return !QChar::isLetter(cluster.front()) && !QChar::isMark(cluster.front()) &&
           std::any_of(cluster.begin() + 1, cluster.end(), makesEmojiSequence);
}

} // namespace

qint64 nextCluster(const TextRope& text, qint64 offset) {
    return neighbours(text, offset).next;
}

qint64 previousCluster(const TextRope& text, qint64 offset) {
    const Neighbours around = neighbours(text, offset);
    return around.place < offset ? around.start : around.previous;
}

qint64 clusterStart(const TextRope& text, qint64 offset) {
    return neighbours(text, offset).start;
}

qint64 backspaceStart(const TextRope& text, qint64 offset) {
    const qint64 start = previousCluster(text, offset);
    const std::u32string cluster = scalars(text, TextRange::between(start, offset));
    if (cluster.size() < 2 || isOneThing(cluster))
        return start;
    // A variation selector is never typed by itself.
    std::size_t kept = cluster.size() - 1;
    while (kept > 0 && isVariationSelector(cluster[kept]))
        --kept;
    qint64 result = start;
    for (const char32_t scalar : std::u32string_view(cluster).substr(0, kept))
        result += QChar::requiresSurrogates(scalar) ? 2 : 1;
    return result;
}

} // namespace quelm::boundaries
