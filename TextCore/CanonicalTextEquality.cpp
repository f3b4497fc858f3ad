// Texts are canonically equivalent when their decompositions are the same but for the order of neighbouring marks of
// different combining classes. So the marks of each class, taken by themselves, must be the same in the same order
// between two starters, and that is seen from left to right without putting anything in order: the marks that one text
// shows first wait for those of the other. What two texts begin with in common says the same of both wherever it ends,
// so that nothing before the first difference matters, and nothing behind the first contradiction is read.

#include "TextCore/CanonicalText.h"
#include "TextCore/CanonicalTextForms.h"
#include "TextCore/Check.h"
#include "TextCore/UTF8Scan.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quelm::canonical {

namespace {

const icu::Normalizer2& nfd() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFDInstance(status);
    require(U_SUCCESS(status), "ICU has its data of normalisation");
    return *normalizer;
}

/// A character that has no decomposition; one of class 0 is a starter, any other a mark.
struct Part {
    UChar32 scalar;
    std::uint8_t combiningClass;

    static Part of(UChar32 scalar) { return {scalar, u_getCombiningClass(scalar)}; }
    /// What the end of a text counts as: a starter that no text has.
    static Part end() { return {-1, 0}; }

    bool isMark() const { return combiningClass != 0; }
    friend bool operator==(const Part&, const Part&) = default;
};

/// The parts of a text one after the other, not put in order.
class Parts {
public:
    explicit Parts(std::string_view text) : rest_(text) { load(); }

    Part current() const { return current_; }
    void advance() {
        if (at_ < decomposition_.length())
            loadFromDecomposition();
        else
            load();
    }
    /// Whether the current part is the first of a character, or the end.
    bool isAtCharacter() const { return isAtCharacter_; }
    /// The text from the current character.
    std::string_view rest() const { return fromCurrent_; }

private:
    void load() {
        fromCurrent_ = rest_;
        isAtCharacter_ = true;
        decomposition_.remove();
        at_ = 0;
        if (rest_.empty()) {
            current_ = Part::end();
            return;
        }
        const auto [leading, size] = utf8::leadingScalar(rest_);
        rest_.remove_prefix(size);
        const auto scalar = static_cast<UChar32>(leading);
        if (nfd().getDecomposition(scalar, decomposition_)) {
            loadFromDecomposition();
            isAtCharacter_ = true;
        } else {
            current_ = Part::of(scalar);
        }
    }
    void loadFromDecomposition() {
        current_ = Part::of(decomposition_.char32At(at_));
        at_ = decomposition_.moveIndex32(at_, 1);
        isAtCharacter_ = false;
    }

    std::string_view rest_;
    std::string_view fromCurrent_;
    icu::UnicodeString decomposition_;
    std::int32_t at_ = 0;
    Part current_ = Part::end();
    bool isAtCharacter_ = true;
};

enum class Side : std::uint8_t { left, right };

/// The marks since the last starter that one text has shown and the other has not yet.
class WaitingMarks {
public:
    bool empty() const { return count_ == 0; }

    /// Takes a mark of one side; false when the other side has shown another in its place.
    bool add(Side side, Part mark) {
        Queue& queue = queueOf(mark.combiningClass);
        if (queue.size() == 0 || queue.side == side) {
            queue.side = side;
            queue.scalars.push_back(mark.scalar);
            ++count_;
            return true;
        }
        if (queue.scalars[queue.first] != mark.scalar)
            return false;
        ++queue.first;
        --count_;
        if (queue.size() == 0) {
            queue.scalars.clear();
            queue.first = 0;
        }
        return true;
    }

    /// Whether marks of a side wait, which the other has no more to show for once it has reached a starter.
    bool hasAny(Side side) const {
        return std::ranges::any_of(queues_,
                                   [&](const Queue& queue) { return queue.size() != 0 && queue.side == side; });
    }

private:
    struct Queue {
        std::uint8_t combiningClass;
        Side side = Side::left;
        std::vector<UChar32> scalars;
        /// Those before it have been matched.
        std::size_t first = 0;
        std::size_t size() const { return scalars.size() - first; }
    };

    Queue& queueOf(std::uint8_t combiningClass) {
        const auto known = std::ranges::find(queues_, combiningClass, &Queue::combiningClass);
        return known != queues_.end() ? *known : queues_.emplace_back(Queue{combiningClass, Side::left, {}, 0});
    }

    std::vector<Queue> queues_;
    std::size_t count_ = 0;
};

/// Goes through both texts, which differ in their first characters, to a place where they have shown the same and both
/// stand between two characters, and leaves the rests. False when they cannot be equivalent.
bool skipEquivalentStart(std::string_view& leftText, std::string_view& rightText) {
    Parts left(leftText);
    Parts right(rightText);
    WaitingMarks waiting;
    do {
        const Part leftPart = left.current();
        const Part rightPart = right.current();
        if (leftPart == rightPart && (waiting.empty() || leftPart.isMark())) {
            // The same mark on both sides goes behind those that wait, in either order.
            if (waiting.empty() || (waiting.add(Side::left, leftPart) && waiting.add(Side::right, rightPart))) {
                left.advance();
                right.advance();
                continue;
            }
            return false;
        }
        if (!leftPart.isMark() && !rightPart.isMark())
            return false;
        if (leftPart.isMark()) {
            if (!waiting.add(Side::left, leftPart))
                return false;
            left.advance();
        }
        if (rightPart.isMark()) {
            if (!waiting.add(Side::right, rightPart))
                return false;
            right.advance();
        }
        if ((!leftPart.isMark() && waiting.hasAny(Side::right)) || (!rightPart.isMark() && waiting.hasAny(Side::left)))
            return false;
    } while (!waiting.empty() || !left.isAtCharacter() || !right.isAtCharacter());
    leftText = left.rest();
    rightText = right.rest();
    return true;
}

} // namespace

bool equal(std::string_view left, std::string_view right) {
    // Texts that are the same in different forms throughout are normalised faster than taken apart.
    constexpr int manyDifferences = 256;
    for (int difference = 0; difference < manyDifferences; ++difference) {
        const std::size_t same = sharedCharacterStart(left, right, commonPrefixLength(left, right));
        left.remove_prefix(same);
        right.remove_prefix(same);
        if (left.empty() || right.empty())
            return left.empty() && right.empty();
        if (U8_IS_SINGLE(left.front()) && U8_IS_SINGLE(right.front()))
            return false;
        if (!skipEquivalentStart(left, right))
            return false;
    }
    return compare(left, right) == 0;
}

} // namespace quelm::canonical
