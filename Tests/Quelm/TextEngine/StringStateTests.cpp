#include "Quelm/TextEngine/StringState.h"
#include "TextCore/TextRope.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

/// Whether a quote at the end of the text, within a string, ends it.
bool quoteEndsStringAfter(const std::string& text) {
    const TextRope rope = TextRope(SharedText(std::string_view(text)));
    StringState state = StringState::insideAt(rope, rope.byteCount());
    state.advance('"');
    return !state.isInside();
}

TEST(StringStateTests, AnOddNumberOfBackslashesEscapes) {
    for (const std::size_t count : {0, 1, 2, 3, 5'000, 5'001, 50'000, 50'001})
        EXPECT_EQ(quoteEndsStringAfter("\"x" + std::string(count, '\\')), count % 2 == 0) << count;
    EXPECT_FALSE(quoteEndsStringAfter("\\")) << "the text begins with it";
}

TEST(StringStateTests, MoreBackslashesThanAreLookedAtEscapeNothing) {
    const auto most = static_cast<std::size_t>(StringState::longestEscapes);
    EXPECT_FALSE(quoteEndsStringAfter("x" + std::string(most - 1, '\\')));
    EXPECT_TRUE(quoteEndsStringAfter("x" + std::string(most + 1, '\\')));
    EXPECT_TRUE(quoteEndsStringAfter("x" + std::string(5 * most + 1, '\\')));
}

TEST(StringStateTests, TheStartOfALineWithinTheLimitMakesTheStateCertain) {
    const std::string text = "\"\n\"\\\\\\\"[" + std::string(30'000, '\\') + "\"]";
    const TextRope rope = TextRope(SharedText(std::string_view(text)));
    const std::int64_t end = rope.byteCount();
    EXPECT_FALSE(StringState::at(rope, end, 100'000).isInside());
    EXPECT_TRUE(StringState::at(rope, end - 2, 100'000).isInside());
}

} // namespace
} // namespace quelm
