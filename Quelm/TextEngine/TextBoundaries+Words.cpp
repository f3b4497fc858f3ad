#include "Quelm/TextEngine/TextBoundaries.h"
#include "TextCore/TextRope.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>

// A caret that goes by words stops where a run of characters of one kind begins, spaces excepted, and before and after
// each line feed. What kind a character is depends on few characters around it, so both directions find the same stops.

namespace quelm::boundaries {

namespace {

/// How far a window goes to either side of its place, in units.
constexpr std::array<qint64, 2> reaches{256, 4096};

/// How far back a character may look for what it continues.
constexpr qint64 longestLookBack = 32;
/// What a character may look at before and after it, a surrogate pair where it is one character.
constexpr qint64 marginBefore = 2 * longestLookBack + 8;
constexpr qint64 marginAfter = 4;

enum class Kind : std::uint8_t { word, other, space, lineEnd };

bool isDigit(char16_t unit) {
    return u'0' <= unit && unit <= u'9';
}

bool isWordCharacter(char32_t scalar) {
    return scalar == U'_' || QChar::isLetterOrNumber(scalar);
}

/// Marks, joiners, skin tones and the like.
bool continuesCharacterBefore(char32_t scalar) {
    return QChar::isMark(scalar) || QChar::category(scalar) == QChar::Other_Format ||
           (0x1F3FB <= scalar && scalar <= 0x1F3FF);
}

/// The units about a place. Positions are counted from the start of the window.
class WordWindow {
public:
    WordWindow(const TextRope& text, qint64 offset, qint64 reach) {
        const TextSummary start = text.summaryBeforeUTF16(std::max<qint64>(offset - reach, 0));
        const TextSummary end = text.summaryBeforeUTF16(std::min<qint64>(offset + reach, text.utf16Count()));
        units_ = text.utf16(ByteRange::between(start.bytes, end.bytes));
        start_ = start.utf16;
        isAtEnd_ = end.bytes == text.byteCount();
    }

    qint64 size() const { return static_cast<qint64>(units_.size()); }
    qint64 position(qint64 offset) const { return offset - start_; }
    qint64 offset(qint64 position) const { return start_ + position; }

    bool isTextStart(qint64 position) const { return offset(position) == 0; }
    bool isTextEnd(qint64 position) const { return isAtEnd_ && position == size(); }

    /// Whether the window has all that decides if there is a stop.
    bool isCertain(qint64 position) const {
        return (start_ == 0 || position >= marginBefore) && (isAtEnd_ || position + marginAfter <= size());
    }

    /// The position after the character at one, and before the character that ends at one.
    qint64 after(qint64 position) const {
        return position + (QChar::isHighSurrogate(unit(position)) && QChar::isLowSurrogate(unit(position + 1)) ? 2 : 1);
    }
    qint64 before(qint64 position) const {
        const bool isPair = QChar::isLowSurrogate(unit(position - 1)) && QChar::isHighSurrogate(unit(position - 2));
        return position - (isPair ? 2 : 1);
    }

    /// The kind of the character at a position before the window's end.
    Kind kindAt(qint64 position) const {
        if (isLineEnd(position))
            return Kind::lineEnd;
        const qint64 least = std::max<qint64>(position - longestLookBack, 0);
        while (position > least && continuesCharacterBefore(scalarAt(position)) && !isLineEnd(before(position)))
            position = before(position);
        const char32_t scalar = scalarAt(position);
        if (QChar::isSpace(scalar))
            return Kind::space;
        if (isWordCharacter(scalar) || continuesCharacterBefore(scalar) || isWithinNumber(position))
            return Kind::word;
        return Kind::other;
    }

    bool isStop(qint64 position) const {
        if (isTextStart(position) || isTextEnd(position))
            return true;
        const Kind preceding = kindAt(before(position));
        const Kind following = kindAt(position);
        if (preceding == Kind::lineEnd || following == Kind::lineEnd)
            return true;
        return following != Kind::space && following != preceding;
    }

private:
    char16_t unit(qint64 position) const {
        return 0 <= position && position < size() ? units_[static_cast<std::size_t>(position)] : u'\0';
    }

    char32_t scalarAt(qint64 position) const {
        const char16_t first = unit(position);
        return after(position) - position == 2 ? QChar::surrogateToUcs4(first, unit(position + 1)) : first;
    }

    bool isLineEnd(qint64 position) const {
        return unit(position) == u'\n' || (unit(position) == u'\r' && unit(position + 1) == u'\n');
    }

    /// Whether a character that is no letter or digit belongs to a number like -1.5e+10.
    bool isWithinNumber(qint64 position) const {
        if (!isDigit(unit(position + 1)))
            return false;
        switch (unit(position)) {
        case u'.':
            return isDigit(unit(position - 1));
        case u'+':
            return isExponentMark(position - 1);
        case u'-':
            return position == 0 || !isWordCharacter(scalarAt(before(position))) || isExponentMark(position - 1);
        default:
            return false;
        }
    }

    /// Whether here is the "e" of a number and not of a word like "3a0e". A number's digits are followed back only so
    /// far.
    bool isExponentMark(qint64 position) const {
        if (unit(position) != u'e' && unit(position) != u'E')
            return false;
        const qint64 least = position - longestLookBack;
        qint64 start = position;
        while (start > least && (isDigit(unit(start - 1)) || unit(start - 1) == u'.'))
            --start;
        return start < position && (start <= least || start == 0 || !isWordCharacter(scalarAt(before(start))));
    }

    std::u16string units_;
    qint64 start_ = 0;
    bool isAtEnd_ = false;
};

/// What `find(window, isLargest)` gives in the smallest window that suffices; in the largest it must find something.
template <class Find>
auto findNear(const TextRope& text, qint64 offset, Find&& find) {
    for (const qint64 reach : reaches)
        if (const auto found = find(WordWindow(text, offset, reach), false))
            return *found;
    return *find(WordWindow(text, offset, reaches.back()), true);
}

/// Whether the runs of a window end here, for all that a character's kind tells, or it cannot tell.
std::optional<bool> isStop(const WordWindow& window, qint64 position, bool isLargest) {
    if (window.isCertain(position))
        return window.isStop(position);
    return isLargest ? std::optional(true) : std::nullopt;
}

qint64 kindStopAfter(const TextRope& text, qint64 offset) {
    return findNear(text, offset, [&](const WordWindow& window, bool isLargest) -> std::optional<qint64> {
        qint64 position = window.position(offset);
        std::optional<bool> stops = false;
        while (stops == false) {
            position = window.after(position);
            stops = isStop(window, position, isLargest);
        }
        return stops ? std::optional(window.offset(position)) : std::nullopt;
    });
}

qint64 kindStopBefore(const TextRope& text, qint64 offset) {
    return findNear(text, offset, [&](const WordWindow& window, bool isLargest) -> std::optional<qint64> {
        qint64 position = window.position(offset);
        std::optional<bool> stops = false;
        while (stops == false) {
            position = window.before(position);
            stops = isStop(window, position, isLargest);
        }
        return stops ? std::optional(window.offset(position)) : std::nullopt;
    });
}

/// The run of characters of one kind around the one at `offset`.
TextRange runAt(const TextRope& text, qint64 offset) {
    return findNear(text, offset, [&](const WordWindow& window, bool isLargest) -> std::optional<TextRange> {
        qint64 start = window.position(offset);
        const Kind kind = window.kindAt(start);
        qint64 end = window.after(start);
        while (window.isCertain(start) && !window.isTextStart(start) && window.kindAt(window.before(start)) == kind)
            start = window.before(start);
        while (window.isCertain(end) && !window.isTextEnd(end) && window.kindAt(end) == kind)
            end = window.after(end);
        if (!isLargest && !(window.isCertain(start) && window.isCertain(end)))
            return std::nullopt;
        return TextRange::between(window.offset(start), window.offset(end));
    });
}

Kind kindAt(const TextRope& text, qint64 offset) {
    const WordWindow window(text, offset, reaches.front());
    return window.kindAt(window.position(offset));
}

bool isAtLineEnd(const TextRope& text, qint64 offset) {
    return offset == text.utf16Count() || kindAt(text, offset) == Kind::lineEnd;
}

} // namespace

/// A word may end within a cluster, and goes on then; where so many do in a row, it is cut.
constexpr int mostStops = 4;

qint64 nextWord(const TextRope& text, qint64 offset) {
    for (int stop = 0; stop < mostStops && offset < text.utf16Count(); ++stop) {
        offset = kindStopAfter(text, offset);
        if (clusterStart(text, offset) == offset)
            break;
    }
    return offset;
}

qint64 previousWord(const TextRope& text, qint64 offset) {
    for (int stop = 0; stop < mostStops && offset > 0; ++stop) {
        offset = kindStopBefore(text, offset);
        if (clusterStart(text, offset) == offset)
            break;
    }
    return offset;
}

TextRange wordAt(const TextRope& text, qint64 offset) {
    qint64 start = clusterStart(text, offset);
    if (isAtLineEnd(text, start)) {
        const qint64 before = previousCluster(text, start);
        if (start == 0 || isAtLineEnd(text, before))
            return {start, 0};
        start = before;
    }
    if (kindAt(text, start) == Kind::other)
        return TextRange::between(start, nextCluster(text, start));
    const TextRange run = runAt(text, start);
    const qint64 end = clusterStart(text, run.end()) == run.end() ? run.end() : nextCluster(text, run.end());
    return TextRange::between(clusterStart(text, run.location), end);
}

} // namespace quelm::boundaries
