#include "TextCore/Graphemes.h"

#include "TextCore/Check.h"
#include "TextCore/UTF8Scan.h"

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <limits>

// Most boundaries need no rules. A character is called plain here when its Grapheme_Cluster_Break property
// says that nothing joins it to another plain one: no mark, joiner, prefix, regional indicator or conjoining
// jamo. Between two plain characters other than CR LF there is a boundary, whatever surrounds them, in every
// version of the annex. Most of any text is plain, and all characters below U+0300 are: those are counted
// many at a time. Only the stretches around other characters go through ICU.

namespace quelm::graphemes {

namespace {

/// Low characters are looked at in blocks, in bytes, that stay in the processor's cache.
constexpr std::size_t lowBlock = std::size_t{64} << 10;

/// Fewer clusters than this are found as fast one by one as in a block.
constexpr std::int64_t fewClusters = 16;

/// A stretch for ICU ends where this many sure boundaries follow each other: setting ICU up costs about as
/// much as its work on that many characters.
constexpr int sureBoundariesToStop = 16;

/// Bytes given to ICU at once: at first, and at most, when a single cluster turns out to be as long as that.
/// ICU counts in 32 bits.
constexpr std::size_t firstPiece = 1024;
constexpr std::size_t longestPiece = std::size_t{1} << 30;

/// Which characters are plain. Those of the Basic Multilingual Plane are looked up in 8 KB that the first use
/// fills, in half a millisecond: it halves the cost of long texts to ask ICU for each of them only once.
class PlainCharacters {
public:
    static const PlainCharacters& table() {
        static const PlainCharacters characters;
        return characters;
    }

    bool contains(char32_t scalar) const { return scalar < planeSize ? plane_[scalar] : isPlain(scalar); }

private:
    static constexpr char32_t planeSize = 0x10000;

    PlainCharacters() {
        for (char32_t scalar = 0; scalar < planeSize; ++scalar)
            plane_[scalar] = isPlain(scalar);
    }

    static bool isPlain(char32_t scalar) {
        switch (u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_GRAPHEME_CLUSTER_BREAK)) {
        case U_GCB_OTHER:
        case U_GCB_CONTROL:
        case U_GCB_CR:
        case U_GCB_LF:
        case U_GCB_LV:
        case U_GCB_LVT:
            return true;
        default:
            return false;
        }
    }

    std::bitset<planeSize> plane_;
};

struct Character {
    char32_t scalar;
    std::size_t end;
    bool isPlain;
};

Character characterAt(std::string_view text, std::size_t position) {
    const auto [scalar, size] = utf8::leadingScalar(text.substr(position));
    return {scalar, position + size, scalar < utf8::lowLimit || PlainCharacters::table().contains(scalar)};
}

bool isCRLF(const Character& first, const Character& second) {
    return first.scalar == '\r' && second.scalar == '\n';
}

/// Whether the character that the text begins with is low.
bool beginsLow(std::string_view text) {
    constexpr unsigned lowLimitLead = 0xC0 | utf8::lowLimit >> 6;
    return static_cast<unsigned char>(text.front()) < lowLimitLead;
}

/// The size of the plain character that the text begins with, as far as a quick look tells: 0 when it is a carriage
/// return, has four bytes, or is near the end of the text.
std::size_t sizeIfPlain(std::string_view text, const PlainCharacters& plain) {
    constexpr std::size_t longest = 3;
    if (text.size() < longest)
        return 0;
    const auto bits = [text](std::size_t index, unsigned mask) {
        return static_cast<unsigned char>(text[index]) & mask;
    };
    const unsigned lead = bits(0, 0xFF);
    if (lead < 0x80)
        return lead == '\r' ? 0 : 1;
    if (lead < 0xE0)
        return plain.contains(bits(0, 0x1F) << 6 | bits(1, 0x3F)) ? 2 : 0;
    if (lead < 0xF0)
        return plain.contains(bits(0, 0x0F) << 12 | bits(1, 0x3F) << 6 | bits(2, 0x3F)) ? 3 : 0;
    return 0;
}

/// ICU's rules over one piece of text at a time. One a thread, because making an iterator costs more than
/// using it.
class ICUBoundaries {
public:
    static ICUBoundaries& ofThisThread() {
        static thread_local ICUBoundaries boundaries;
        return boundaries;
    }

    ICUBoundaries(const ICUBoundaries&) = delete;
    ICUBoundaries& operator=(const ICUBoundaries&) = delete;

    /// Starts over on `piece`, which must outlive the calls of `next`.
    void setPiece(std::string_view piece) {
        UErrorCode status = U_ZERO_ERROR;
        utext_openUTF8(&text_, piece.data(), static_cast<std::int64_t>(piece.size()), &status);
        ubrk_setUText(iterator_, &text_, &status);
        require(U_SUCCESS(status), "ICU takes a piece of text");
    }

    /// The end of the next cluster as an offset in the piece, or UBRK_DONE.
    std::int32_t next() { return ubrk_next(iterator_); }

private:
    ICUBoundaries() {
        UErrorCode status = U_ZERO_ERROR;
        iterator_ = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
        require(U_SUCCESS(status), "ICU has its data of grapheme clusters");
    }
    ~ICUBoundaries() {
        ubrk_close(iterator_);
        utext_close(&text_);
    }

    UBreakIterator* iterator_ = nullptr;
    UText text_ = UTEXT_INITIALIZER;
};

/// A walk over the clusters of a text from its start. Between two steps it stands at a boundary.
class ClusterWalk {
public:
    explicit ClusterWalk(std::string_view text) : text_(text) {}

    std::size_t position() const { return position_; }
    std::int64_t clusters() const { return clusters_; }

    /// Goes on until it has passed `limit` clusters or the text ends.
    void advance(std::int64_t limit) {
        limit_ = limit;
        while (!isDone()) {
            if (!passPlainCharacters())
                passOtherCharacters();
        }
    }

private:
    bool isDone() const { return position_ == text_.size() || clusters_ == limit_; }

    void passCluster(std::size_t end) {
        position_ = end;
        ++clusters_;
    }

    Character characterAt(std::size_t position) const { return graphemes::characterAt(text_, position); }

    bool isLowRun(const Character& first, const Character& second) const {
        return first.scalar < utf8::lowLimit && second.scalar < utf8::lowLimit && limit_ - clusters_ >= fewClusters;
    }

    /// Passes plain characters that plain ones follow, or nothing. False when something else comes next.
    bool passPlainCharacters() {
        Character character = characterAt(position_);
        while (character.isPlain) {
            if (character.end == text_.size()) {
                passCluster(character.end);
                return true;
            }
            const Character following = characterAt(character.end);
            if (!following.isPlain)
                return false;
            if (isCRLF(character, following)) {
                passCluster(following.end);
                return true;
            }
            if (isLowRun(character, following)) {
                passLowCharacters();
                return true;
            }
            if (passMixedCharacters(character.end))
                return true;
            passCluster(character.end);
            if (isDone())
                return true;
            character = following;
        }
        return false;
    }

    /// Passes all clusters but the last of the characters below `utf8::lowLimit` here, of which there are two
    /// or more that are no CR LF: what follows may belong to the last one.
    void passLowCharacters() {
        const auto clustersLeft = static_cast<std::uint64_t>(limit_ - clusters_);
        const std::size_t block = std::min<std::uint64_t>(lowBlock, clustersLeft + 1);
        std::string_view passed = text_.substr(position_, utf8::lowPrefixLength(text_.substr(position_, block)));
        while (U8_IS_TRAIL(passed.back()))
            passed.remove_suffix(1);
        passed.remove_suffix(passed.ends_with("\r\n") ? 2 : 1);
        // Most runs are short and on one line: finding no carriage return is quicker than counting pairs.
        const std::size_t pairs = passed.find('\r') == std::string_view::npos ? 0 : utf8::countCRLF(passed);
        position_ += passed.size();
        clusters_ += static_cast<std::int64_t>(utf8::countCharacters(passed) - pairs);
    }

    /// Passes all clusters but the last of plain characters here, of which the first ends at `end`, to where many low
    /// ones follow each other. False when it passes none.
    bool passMixedCharacters(std::size_t end) {
        const PlainCharacters& plain = PlainCharacters::table();
        const std::int64_t clustersLeft = limit_ - clusters_;
        std::int64_t passed = 0;
        for (std::int64_t low = 0; passed < clustersLeft && low < fewClusters; ++passed) {
            const std::string_view rest = text_.substr(end);
            const std::size_t size = sizeIfPlain(rest, plain);
            if (size == 0)
                break;
            low = beginsLow(rest) ? low + 1 : 0;
            position_ = end;
            end += size;
        }
        clusters_ += passed;
        return passed > 0;
    }

    /// Passes at least one cluster by ICU's rules.
    void passOtherCharacters() {
        std::size_t size = firstPiece;
        while (!passPiece(pieceHere(size), size == longestPiece))
            size *= 2;
    }

    struct Piece {
        std::string_view text;
        bool endsAtBoundary;
    };

    /// What to give to ICU: the text from here to where no more of the rules is needed, cut off at about
    /// `size` bytes.
    Piece pieceHere(std::size_t size) const {
        const auto upTo = [this](std::size_t end) { return text_.substr(position_, end - position_); };
        Character character = characterAt(position_);
        std::size_t firstSureBoundary = 0;
        int sureBoundaries = 0;
        while (character.end != text_.size()) {
            const Character following = characterAt(character.end);
            if (!character.isPlain || !following.isPlain || isCRLF(character, following)) {
                sureBoundaries = 0;
            } else if (sureBoundaries++ == 0) {
                firstSureBoundary = character.end;
            }
            if (sureBoundaries == sureBoundariesToStop)
                return {upTo(firstSureBoundary), true};
            if (character.end - position_ >= size)
                return {upTo(character.end), sureBoundaries > 0};
            character = following;
        }
        return {upTo(text_.size()), true};
    }

    /// Passes the clusters that end in the piece: at its own end only when that is a boundary, or
    /// `isLongest`. False when there are none.
    bool passPiece(Piece piece, bool isLongest) {
        const std::size_t start = position_;
        const auto size = static_cast<std::int32_t>(piece.text.size());
        ICUBoundaries& boundaries = ICUBoundaries::ofThisThread();
        boundaries.setPiece(piece.text);
        while (!isDone()) {
            const std::int32_t end = boundaries.next();
            if (end == UBRK_DONE || (end == size && !piece.endsAtBoundary))
                break;
            passCluster(start + static_cast<std::size_t>(end));
        }
        if (position_ == start && isLongest)
            passCluster(start + piece.text.size());
        return position_ != start;
    }

    std::string_view text_;
    std::size_t position_ = 0;
    std::int64_t clusters_ = 0;
    std::int64_t limit_ = 0;
};

} // namespace

std::int64_t count(std::string_view text) {
    ClusterWalk walk(text);
    walk.advance(std::numeric_limits<std::int64_t>::max());
    return walk.clusters();
}

std::string_view prefix(std::string_view text, std::int64_t clusters) {
    require(clusters >= 0, "a number of clusters is not negative");
    ClusterWalk walk(text);
    walk.advance(clusters);
    return text.substr(0, walk.position());
}

std::size_t lastSureBoundary(std::string_view text, std::size_t searched) {
    const std::size_t least = text.size() - std::min(text.size(), searched);
    std::size_t end = text.size();
    for (std::size_t start = end; start > least;) {
        --start;
        if (U8_IS_TRAIL(text[start]))
            continue;
        if (end < text.size()) {
            const Character first = characterAt(text, start);
            const Character second = characterAt(text, end);
            if (first.isPlain && second.isPlain && !isCRLF(first, second))
                return end;
        }
        end = start;
    }
    return 0;
}

} // namespace quelm::graphemes
