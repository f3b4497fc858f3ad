#include "Tests/TextCore/Support/GuardedText.h"
#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/UTF8.h"
#include "TextCore/UTF8Scan.h"

#include <hwy/highway.h>
#include <hwy/targets.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

// The scans that look at many bytes at a time, checked for each instruction set that they are compiled for
// and that this processor has.

namespace quelm {
namespace {

using test::GuardedText;
using test::joined;
using test::randomBelow;
using test::repeated;

std::vector<std::int64_t> targets() {
    std::vector<std::int64_t> targets = hwy::SupportedAndGeneratedTargets();
    if (!std::ranges::count(targets, HWY_STATIC_TARGET))
        targets.push_back(HWY_STATIC_TARGET);
    return targets;
}

class UTF8ScanTest : public testing::TestWithParam<std::int64_t> {
protected:
    void SetUp() override { hwy::SetSupportedTargetsForTest(GetParam()); }
    void TearDown() override { hwy::SetSupportedTargetsForTest(0); }
};

INSTANTIATE_TEST_SUITE_P(EachTarget, UTF8ScanTest, testing::ValuesIn(targets()),
                         [](const auto& target) { return std::string(hwy::TargetName(target.param)); });

/// RFC 3629 by arithmetic: decode, then ask whether that is the shortest form of a scalar value.
bool isValidByDefinition(std::string_view bytes) {
    std::size_t position = 0;
    while (position < bytes.size()) {
        const auto lead = static_cast<unsigned char>(bytes[position]);
        const std::size_t size = lead < 0x80 ? 1 : lead >> 5 == 0b110 ? 2 : lead >> 4 == 0b1110 ? 3 : 4;
        if ((size == 4 && lead >> 3 != 0b11110) || bytes.size() - position < size)
            return false;
        constexpr char32_t leadMasks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
        char32_t scalar = lead & leadMasks[size];
        for (std::size_t index = 1; index < size; ++index) {
            const auto byte = static_cast<unsigned char>(bytes[position + index]);
            if (byte >> 6 != 0b10)
                return false;
            scalar = scalar << 6 | (byte & 0x3F);
        }
        constexpr char32_t lowestOfSize[] = {0, 0, 0x80, 0x800, 0x10000};
        if (scalar < lowestOfSize[size] || scalar > 0x10FFFF || (scalar >= 0xD800 && scalar <= 0xDFFF))
            return false;
        position += size;
    }
    return true;
}

bool isValidToICU(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t size = 0;
    u_strFromUTF8(nullptr, 0, &size, bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

/// Up to `maximum` characters, of one to four bytes in changing proportions.
std::string randomValidText(std::mt19937& random, std::size_t maximum) {
    constexpr char32_t limits[] = {0x80, 0x800, 0xD800, 0x110000};
    const std::size_t widest = 1 + randomBelow(random, 4);
    std::u32string scalars;
    for (std::size_t left = randomBelow(random, maximum + 1); left > 0; --left) {
        const char32_t limit = limits[randomBelow(random, 8) == 0 ? randomBelow(random, 4) : widest - 1];
        const char32_t scalar = static_cast<char32_t>(randomBelow(random, limit));
        scalars.push_back(scalar >= 0xD800 && scalar <= 0xDFFF ? U'\uFFFD' : scalar);
    }
    return test::utf8Of(scalars);
}

void damage(std::mt19937& random, std::string& bytes) {
    if (bytes.empty())
        return;
    const std::size_t position = randomBelow(random, bytes.size());
    switch (randomBelow(random, 4)) {
    case 0:
        bytes[position] = static_cast<char>(random());
        break;
    case 1:
        bytes.erase(position, 1);
        break;
    case 2:
        bytes.insert(position, 1, static_cast<char>(0x80 + randomBelow(random, 0x80)));
        break;
    default:
        bytes.resize(position);
    }
}

TEST_P(UTF8ScanTest, ValidationDecidesEverySequenceAsTheDefinitionDoes) {
    // Every value at which what is allowed changes, in each place of four bytes.
    constexpr unsigned char values[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF,
                                        0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
    // The sequence stands across the edges of vectors and of blocks of vectors, among ASCII and other text.
    constexpr std::size_t places[] = {0, 14, 29, 62, 63, 64, 126, 189, 254, 317, 318, 319, 320, 380, 396};
    const std::string texts[] = {std::string(400, 'x'), repeated("\u00E9", 200), repeated("\u20AC", 134)};
    std::size_t turn = 0;
    for (const unsigned char first : values)
        for (const unsigned char second : values)
            for (const unsigned char third : values)
                for (const unsigned char fourth : values) {
                    const unsigned char sequence[] = {first, second, third, fourth};
                    const std::string_view bytes(reinterpret_cast<const char*>(sequence), 4);
                    ++turn;
                    std::string text = texts[turn % 3];
                    std::size_t place = std::min(places[turn % 15], text.size());
                    while (place < text.size() && static_cast<unsigned char>(text[place]) >> 6 == 0b10)
                        ++place;
                    text.insert(place, bytes);
                    ASSERT_EQ(utf8::isValid(text), isValidByDefinition(bytes))
                        << std::hex << +first << ' ' << +second << ' ' << +third << ' ' << +fourth << " at " << std::dec
                        << place;
                }
}

TEST_P(UTF8ScanTest, ValidationAcceptsEveryScalarValueAndNoSurrogate) {
    for (char32_t scalar = 0x80; scalar <= 0x10FFFF; ++scalar) {
        const bool isSurrogate = scalar >= 0xD800 && scalar <= 0xDFFF;
        char bytes[4];
        std::size_t size = 0;
        const auto put = [&](char32_t byte) { bytes[size++] = static_cast<char>(byte); };
        if (scalar < 0x800) {
            put(0xC0 | scalar >> 6);
        } else if (scalar < 0x10000) {
            put(0xE0 | scalar >> 12);
            put(0x80 | (scalar >> 6 & 0x3F));
        } else {
            put(0xF0 | scalar >> 18);
            put(0x80 | (scalar >> 12 & 0x3F));
            put(0x80 | (scalar >> 6 & 0x3F));
        }
        put(0x80 | (scalar & 0x3F));
        ASSERT_EQ(utf8::isValid({bytes, size}), !isSurrogate) << std::hex << static_cast<unsigned>(scalar);
        ASSERT_FALSE(utf8::isValid({bytes, size - 1})) << std::hex << static_cast<unsigned>(scalar);
    }
}

TEST_P(UTF8ScanTest, ValidationAgreesWithICUOnDamagedText) {
    std::mt19937 random(1);
    for (int turn = 0; turn < 20'000; ++turn) {
        std::string bytes = randomValidText(random, 300);
        ASSERT_TRUE(utf8::isValid(bytes));
        damage(random, bytes);
        ASSERT_EQ(utf8::isValid(bytes), isValidToICU(bytes)) << testing::PrintToString(bytes);
    }
}

TEST_P(UTF8ScanTest, ValidationFindsASequenceCutShortWhereverTheTextEnds) {
    for (std::size_t before = 0; before < 700; ++before) {
        const std::string text(before, 'x');
        for (const std::string_view whole : {"\u00E9", "\u20AC", "\U0001F600"}) {
            ASSERT_TRUE(utf8::isValid(text + std::string(whole)));
            for (std::size_t size = 1; size < whole.size(); ++size) {
                const std::string cut = text + std::string(whole.substr(0, size));
                ASSERT_FALSE(utf8::isValid(cut)) << before << " bytes before " << size;
                ASSERT_FALSE(utf8::isValid(cut + std::string(700, 'x'))) << before << " bytes before " << size;
            }
        }
    }
}

TEST_P(UTF8ScanTest, TheASCIIPrefixEndsAtTheFirstOtherByte) {
    for (std::size_t size = 0; size < 700; ++size) {
        std::string bytes(size, '\x7F');
        ASSERT_EQ(utf8::asciiPrefixLength(bytes), size);
        ASSERT_TRUE(utf8::isASCII(bytes));
        for (std::size_t place = size % 5; place < size; place += 5) {
            bytes[place] = '\x80';
            if (place + 3 < size)
                bytes[place + 3] = '\xFF';
            ASSERT_EQ(utf8::asciiPrefixLength(bytes), place) << "of " << size;
            ASSERT_FALSE(utf8::isASCII(bytes));
            bytes.assign(size, '\x7F');
        }
    }
}

TEST_P(UTF8ScanTest, CountsLineFeedsAndPairsWithACarriageReturnInAnyBytes) {
    std::mt19937 random(2);
    constexpr std::string_view alphabet = "\r\n\nx\x8A\x8D\x0B";
    for (int turn = 0; turn < 20'000; ++turn) {
        std::string bytes;
        for (std::size_t left = randomBelow(random, 400); left > 0; --left)
            bytes += alphabet[randomBelow(random, alphabet.size())];
        std::size_t pairs = 0;
        for (std::size_t at = bytes.find("\r\n"); at != std::string::npos; at = bytes.find("\r\n", at + 1))
            ++pairs;
        ASSERT_EQ(utf8::countLineFeeds(bytes), static_cast<std::size_t>(std::ranges::count(bytes, '\n')));
        ASSERT_EQ(utf8::countCRLF(bytes), pairs);
    }
}

TEST_P(UTF8ScanTest, CountsTheCharactersOfValidText) {
    std::mt19937 random(3);
    for (int turn = 0; turn < 5'000; ++turn) {
        const std::string text = randomValidText(random, 300);
        std::size_t characters = 0;
        for (std::size_t at = 0; at < text.size(); at += utf8::leadingScalar(std::string_view(text).substr(at)).size)
            ++characters;
        ASSERT_EQ(utf8::countCharacters(text), characters);
    }
}

TEST_P(UTF8ScanTest, SumsUpWhatIsInValidText) {
    std::mt19937 random(4);
    for (int turn = 0; turn < 5'000; ++turn) {
        std::string text = randomValidText(random, 300);
        for (char& byte : text)
            if (byte == ' ')
                byte = random() % 2 == 0 ? '\n' : '\r';
        TextSummary expected{.bytes = static_cast<std::int64_t>(text.size())};
        for (std::size_t at = 0; at < text.size();) {
            const utf8::LeadingScalar leading = utf8::leadingScalar(std::string_view(text).substr(at));
            expected.utf16 += leading.size == 4 ? 2 : 1;
            expected.threeByteForms += leading.size == 3;
            expected.lineFeeds += leading.scalar == '\n';
            expected.carriageReturns += leading.scalar == '\r';
            at += leading.size;
        }
        ASSERT_EQ(utf8::summarize(text), expected);
    }
}

TEST_P(UTF8ScanTest, TheLowPrefixEndsBeforeTheFirstCharacterFromItsLimit) {
    for (std::size_t size = 0; size < 300; ++size) {
        const std::string low = std::string(size % 3, 'x') + repeated("\u02FF", size);
        ASSERT_EQ(utf8::lowPrefixLength(low), low.size());
        ASSERT_EQ(utf8::lowPrefixLength(joined({low, "\u0300", low})), low.size());
        ASSERT_EQ(utf8::lowPrefixLength(joined({low, "\U0010FFFF", low})), low.size());
        ASSERT_EQ(utf8::lowPrefixLength(low + "\xCB"), low.size() + 1) << "a text that ends within a character";
    }
}

TEST_P(UTF8ScanTest, NothingBeyondTheEndIsRead) {
    for (std::size_t size = 0; size < 700; ++size) {
        for (const char byte : {'x', '\n', '\xBF'}) {
            const GuardedText text(std::string(size, byte));
            EXPECT_EQ(utf8::isValid(text.view()), size == 0 || byte != '\xBF');
            EXPECT_EQ(utf8::asciiPrefixLength(text.view()), byte == '\xBF' ? 0 : size);
            EXPECT_EQ(utf8::countLineFeeds(text.view()), byte == '\n' ? size : 0);
            EXPECT_EQ(utf8::countCRLF(text.view()), 0u);
            EXPECT_EQ(utf8::summarize(text.view()).lineFeeds, byte == '\n' ? static_cast<std::int64_t>(size) : 0);
            EXPECT_EQ(utf8::lowPrefixLength(text.view()), size);
            EXPECT_EQ(utf8::countCharacters(text.view()), byte == '\xBF' ? 0 : size);
        }
        const GuardedText unfinished(std::string(size, 'x') + "\xF0\x9F\x98");
        EXPECT_FALSE(utf8::isValid(unfinished.view()));
    }
}

} // namespace
} // namespace quelm
