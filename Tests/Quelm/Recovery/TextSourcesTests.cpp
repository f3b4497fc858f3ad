#include "Quelm/Recovery/TextSources.h"

#include "Quelm/Recovery/TextAssembly.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quelm {
namespace {

using journal::TextSource;

TextRope rope(std::string_view text) {
    return TextRope(SharedText(text));
}

std::string numbers(int count, const char* separator = " ") {
    std::string text;
    for (int number = 0; number < count; ++number)
        text += std::to_string(number) + separator;
    return text;
}

class TextSourcesTests : public testing::Test {
protected:
    std::vector<TextSource> describe(const TextRope& text, const TextRope& removed = {}) {
        auto described = sources.describe(text, removed);
        const auto again = assembleText(described, removed, sources.file(), text.byteCount());
        EXPECT_TRUE(again.has_value() && *again == text);
        return described;
    }
    static std::size_t literalBytes(const std::vector<TextSource>& described) {
        std::size_t count = 0;
        for (const TextSource& source : described)
            count += source.bytes.size();
        return count;
    }

    TextSources sources;
};

TEST_F(TextSourcesTests, NothingIsDescribedByNothing) {
    EXPECT_TRUE(describe({}).empty());
}

TEST_F(TextSourcesTests, NewTextIsGiven) {
    const auto described = describe(rope(numbers(1000)), rope(numbers(1000)));
    ASSERT_EQ(described.size(), 1U);
    EXPECT_EQ(described[0].origin, TextSource::Origin::literal);
}

TEST_F(TextSourcesTests, WhatStaysOfTheRemovedTextIsOneCopy) {
    const TextRope removed = rope(numbers(20'000));
    const TextRope text = removed.replacing({0, 1}, rope("x"));
    const auto described = describe(text, removed);
    ASSERT_EQ(described.size(), 2U);
    EXPECT_EQ(described[0].origin, TextSource::Origin::literal);
    EXPECT_EQ(described[1].origin, TextSource::Origin::removed);
    // A piece is joined with what is put before it.
    EXPECT_LE(literalBytes(described), 2048U);
}

TEST_F(TextSourcesTests, WhatTheFileHasIsACopyOfIt) {
    const TextRope file = rope(numbers(20'000));
    sources = TextSources(file);
    const auto described = describe(file.slice({100, 50'000}) + file.slice({0, 100}));
    ASSERT_FALSE(described.empty());
    EXPECT_EQ(described[0].origin, TextSource::Origin::file);
    EXPECT_EQ(described[0].location, 100);
    EXPECT_LE(literalBytes(described), 2048U);
}

TEST_F(TextSourcesTests, ShortStretchesAreGiven) {
    const TextRope file = rope(numbers(100));
    sources = TextSources(file);
    const auto described = describe(file.slice({0, 20}));
    ASSERT_EQ(described.size(), 1U);
    EXPECT_EQ(described[0].origin, TextSource::Origin::literal);
}

TEST_F(TextSourcesTests, WhatIsThereTwiceCanBeCopiedToo) {
    const TextRope part = rope(numbers(5'000));
    const TextRope removed = part + part.slice({1000, 9000}) + part;
    EXPECT_LE(literalBytes(describe(removed + part, removed)), 4096U);
}

TEST_F(TextSourcesTests, TheRemovedTextAndTheFileAreBothLookedAt) {
    const TextRope file = rope(numbers(5'000));
    const TextRope removed = rope(numbers(6'000));
    sources = TextSources(file);
    const auto described = describe(removed + rope("-") + file, removed);
    EXPECT_LE(literalBytes(described), 4096U);
    EXPECT_EQ(described.front().origin, TextSource::Origin::removed);
    EXPECT_EQ(described.back().origin, TextSource::Origin::file);
}

TEST_F(TextSourcesTests, AnyMixtureIsDescribedAsItIs) {
    std::mt19937 random(3);
    TextRope file = rope(numbers(3'000, "é "));
    for (int round = 0; round < 200; ++round) {
        sources = TextSources(file);
        const auto someOf = [&](const TextRope& text) {
            const auto place = [&] {
                std::int64_t at = text.isEmpty() ? 0 : static_cast<std::int64_t>(random()) % text.byteCount();
                while (at < text.byteCount() && !isBetweenCharacters(text, at))
                    ++at;
                return at;
            };
            const std::int64_t one = place();
            const std::int64_t other = place();
            return text.slice(ByteRange::between(std::min(one, other), std::max(one, other)));
        };
        const TextRope removed = someOf(file) + rope(numbers(static_cast<int>(random() % 300), "é "));
        TextRope text;
        for (unsigned count = random() % 6; count > 0; --count)
            text = text + (random() % 3 == 0   ? rope(numbers(static_cast<int>(random() % 100), "é "))
                           : random() % 2 == 0 ? someOf(removed)
                                               : someOf(file));
        describe(text, removed);
        if (!text.isEmpty() && text.byteCount() < 200'000)
            file = text;
    }
}

} // namespace
} // namespace quelm
