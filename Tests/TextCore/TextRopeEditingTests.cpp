#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/TextPiece.h"
#include "TextCore/TextRope.h"
#include "TextCore/UTF8.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Ropes beside plain strings, in random edits.

namespace quelm {
namespace {

using test::randomBelow;
using test::randomText;

// What texts are made of: letters, ends of lines of all kinds, and characters of one to four bytes.
constexpr std::u32string_view alphabet = U"ab{}\",:1 \n\n\r\u2028\u00F1\u0301\u4E2D\u0627\u200D\U0001F469\U0001F1EA";

/// The number of edits of a test: `usual`, or as the environment says for a longer run.
std::int64_t editCount(std::int64_t usual) {
    const char* asked = std::getenv("QUELM_ROPE_EDITS");
    return asked ? std::atoll(asked) : usual;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// A random place between characters.
std::size_t randomPlace(std::mt19937& random, const std::string& text) {
    std::size_t place = randomBelow(random, text.size() + 1);
    while (place < text.size() && isContinuation(text[place]))
        --place;
    return place;
}

/// The sums, a byte at a time.
TextSummary summaryOf(std::string_view text) {
    TextSummary sum;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        sum.bytes += 1;
        sum.utf16 += isContinuation(byte) ? 0 : value >= 0xF0 ? 2 : 1;
        sum.lineFeeds += byte == '\n';
        sum.carriageReturns += byte == '\r';
        sum.threeByteForms += value >= 0xE0 && value < 0xF0;
    }
    return sum;
}

/// The places of a text at which a measure is at most a target, the last of them.
template <class Measure>
TextSummary lastPlaceAtMost(std::string_view text, Measure measure, std::int64_t target) {
    TextSummary last;
    for (std::size_t place = 0; place <= text.size(); ++place) {
        if (place < text.size() && isContinuation(text[place]))
            continue;
        const TextSummary sum = summaryOf(text.substr(0, place));
        if (measure(sum) > target)
            break;
        last = sum;
    }
    return last;
}

ByteRange randomRange(std::mt19937& random, const std::string& text) {
    const std::size_t one = randomPlace(random, text);
    const std::size_t other = randomPlace(random, text);
    return ByteRange::between(static_cast<std::int64_t>(std::min(one, other)),
                              static_cast<std::int64_t>(std::max(one, other)));
}

/// A stretch as a user edits: mostly short.
ByteRange randomShortRange(std::mt19937& random, const std::string& text) {
    const std::size_t start = randomPlace(random, text);
    std::size_t end = std::min(text.size(), start + randomBelow(random, 12));
    while (end < text.size() && isContinuation(text[end]))
        ++end;
    return ByteRange::between(static_cast<std::int64_t>(start), static_cast<std::int64_t>(end));
}

void replace(std::string& text, ByteRange range, std::string_view replacement) {
    text.replace(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length), replacement);
}

void expectSamePlaces(std::mt19937& random, const TextRope& rope, const std::string& text) {
    const TextSummary whole = summaryOf(text);
    ASSERT_EQ(rope.summary(), whole);
    const auto utf16Of = [](const TextSummary& sum) { return sum.utf16; };
    const auto cellsOf = [](const TextSummary& sum) { return sum.cells(); };

    const std::size_t place = randomPlace(random, text);
    ASSERT_EQ(rope.summaryBefore(static_cast<std::int64_t>(place)), summaryOf(text.substr(0, place)));
    const auto units = static_cast<std::int64_t>(randomBelow(random, static_cast<std::size_t>(whole.utf16) + 1));
    ASSERT_EQ(rope.summaryBeforeUTF16(units), lastPlaceAtMost(text, utf16Of, units));
    const auto cells = static_cast<std::int64_t>(randomBelow(random, static_cast<std::size_t>(whole.cells()) + 2));
    ASSERT_EQ(rope.summaryBeforeCell(cells), lastPlaceAtMost(text, cellsOf, cells));

    const auto line = static_cast<std::int64_t>(randomBelow(random, static_cast<std::size_t>(rope.lineCount())));
    std::size_t start = 0;
    for (std::int64_t passed = 0; passed < line; ++passed)
        start = text.find('\n', start) + 1;
    ASSERT_EQ(rope.summaryBeforeLine(line), summaryOf(text.substr(0, start)));

    const TextRope::Chunk after = rope.chunkAfter(static_cast<std::int64_t>(place));
    const TextRope::Chunk before = rope.chunkBefore(static_cast<std::int64_t>(place));
    ASSERT_EQ(text.substr(static_cast<std::size_t>(after.location), after.bytes.size()), after.bytes);
    ASSERT_EQ(text.substr(static_cast<std::size_t>(before.location), before.bytes.size()), before.bytes);
    if (place < text.size()) {
        ASSERT_LT(place - static_cast<std::size_t>(after.location), after.bytes.size());
    }
    if (place > 0) {
        ASSERT_LT(place - 1 - static_cast<std::size_t>(before.location), before.bytes.size());
    }

    const ByteRange range = randomRange(random, text);
    const std::string part =
        text.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    ASSERT_EQ(rope.bytes(range), part);
    ASSERT_EQ(TextRope::repairing(rope.utf16(range)).contiguous().view(), part);
    ASSERT_EQ(rope.slice(range).contiguous().view(), part);
}

TEST(TextRopeEditing, RandomEditsOfSmallTextsMatchAPlainString) {
    std::mt19937 random(20260411);
    std::string text;
    TextRope rope;
    const std::int64_t edits = editCount(150'000);
    for (std::int64_t edit = 0; edit < edits; ++edit) {
        const ByteRange range = randomShortRange(random, text);
        const std::size_t length = text.size() < 3000 ? randomBelow(random, 14) : randomBelow(random, 6);
        const std::string typed = randomText(random, alphabet, length);
        rope = rope.replacing(range, TextRope::repairing(typed));
        replace(text, range, typed);
        ASSERT_EQ(rope.byteCount(), static_cast<std::int64_t>(text.size()));
        if (edit % 64 == 0) {
            ASSERT_EQ(rope.contiguous().view(), text);
            expectSamePlaces(random, rope, text);
            rope.checkInvariants();
        }
    }
}

TEST(TextRopeEditing, RandomEditsOfATextOfManyPiecesMatchAPlainString) {
    std::mt19937 random(7);
    std::string text = randomText(random, alphabet, 120'000);
    TextRope rope{SharedText(text)};
    const std::int64_t edits = editCount(20'000);
    for (std::int64_t edit = 0; edit < edits; ++edit) {
        // Now and then a long stretch goes or comes, often one of the text's own.
        const bool isLong = randomBelow(random, 50) == 0;
        const ByteRange range =
            isLong && text.size() > 100'000 ? randomRange(random, text) : randomShortRange(random, text);
        const ByteRange copied =
            isLong && text.size() < 300'000 ? randomRange(random, text) : randomShortRange(random, text);
        const std::string replacement =
            text.substr(static_cast<std::size_t>(copied.location), static_cast<std::size_t>(copied.length));
        rope = rope.replacing(range, rope.slice(copied));
        replace(text, range, replacement);
        ASSERT_EQ(rope.byteCount(), static_cast<std::int64_t>(text.size()));
        if (edit % 1000 == 0) {
            ASSERT_EQ(rope.contiguous().view(), text);
            rope.checkInvariants();
            ASSERT_EQ(rope.summary(), summaryOf(text));
            const std::size_t place = randomPlace(random, text);
            ASSERT_EQ(rope.summaryBefore(static_cast<std::int64_t>(place)), summaryOf(text.substr(0, place)));
        }
    }
}

TEST(TextRopeEditing, SnapshotsKeepTheirText) {
    std::mt19937 random(3);
    std::string text = randomText(random, alphabet, 9000);
    TextRope rope{SharedText(text)};
    std::vector<std::pair<TextRope, std::string>> snapshots;
    for (int edit = 0; edit < 2000; ++edit) {
        const ByteRange range = randomShortRange(random, text);
        const std::string typed = randomText(random, alphabet, randomBelow(random, 12));
        if (edit % 100 == 0)
            snapshots.emplace_back(rope, text);
        rope = rope.replacing(range, TextRope::repairing(typed));
        replace(text, range, typed);
    }
    for (const auto& [snapshot, former] : snapshots) {
        EXPECT_EQ(snapshot.contiguous().view(), former);
        snapshot.checkInvariants();
    }
}

TEST(TextRopeEditing, TypingAtOnePlaceMakesFewPieces) {
    TextRope rope{SharedText(std::string(100'000, 'x'))};
    const TextRope typed = TextRope::repairing("a");
    for (int key = 0; key < 20'000; ++key)
        rope = rope.replacing({50'000 + key, 0}, typed);
    int chunks = 0;
    rope.forEachChunk({0, rope.byteCount()}, [&chunks](std::string_view) { ++chunks; });
    // Two adjacent ones hold more than a kilobyte.
    EXPECT_LE(chunks, 2 * 120'000 / 1024 + 1);
    EXPECT_EQ(rope.bytes({49'999, 20'002}), "x" + std::string(20'000, 'a') + "x");
}

TEST(TextRopeEditing, EqualityDoesNotDependOnThePieces) {
    std::mt19937 random(11);
    const std::string text = randomText(random, alphabet, 5000);
    const TextRope whole{SharedText(text)};
    TextRope pieced;
    for (std::size_t place = 0; place < text.size();) {
        std::size_t end = std::min(text.size(), place + 1 + randomBelow(random, 700));
        while (end < text.size() && isContinuation(text[end]))
            ++end;
        pieced = pieced + TextRope::repairing(std::string_view(text).substr(place, end - place));
        place = end;
    }
    pieced.checkInvariants();
    EXPECT_EQ(pieced, whole);
    EXPECT_EQ(whole, pieced);
    const TextRope other = pieced.replacing({0, 1}, TextRope::repairing("Z"));
    EXPECT_FALSE(other == whole);
    EXPECT_FALSE(whole == other);
}

TEST(TextRopeEditing, PiecesOfAWholeTextShareItsMemory) {
    const SharedText whole(test::repeated("{\"clave\": [1, 2, 3]}\r\n", 5000));
    const TextRope rope(whole);
    rope.prepare();
    rope.checkInvariants();
    const TextRope::Chunk chunk = rope.chunkAfter(60'000);
    EXPECT_EQ(chunk.bytes.data(), whole.data() + chunk.location);
    const TextRope edited = rope.replacing({10, 0}, TextRope::repairing("x"));
    const TextRope::Chunk later = edited.chunkAfter(60'000);
    EXPECT_EQ(later.bytes.data(), whole.data() + later.location - 1);
}

} // namespace
} // namespace quelm
