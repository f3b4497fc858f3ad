#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/WhiteSpace.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

using namespace std::string_view_literals;

/// The characters with the property White_Space, as the Unicode Character Database lists them.
constexpr std::u32string_view whiteSpace = U"\u0009\u000A\u000B\u000C\u000D\u0020\u0085\u00A0\u1680\u2000"
                                           U"\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008"
                                           U"\u2009\u200A\u2028\u2029\u202F\u205F\u3000";

TEST(WhiteSpace, TrimsBothEndsAndNothingBetween) {
    EXPECT_EQ(trimmedWhiteSpace("  a b\t\n"), "a b");
    EXPECT_EQ(trimmedWhiteSpace("\u00A0\u3000clave \u2003 larga\u2029\r\n"), "clave \u2003 larga");
    EXPECT_EQ(trimmedWhiteSpace("clave"), "clave");
    EXPECT_EQ(trimmedWhiteSpace("ñ"), "ñ");
}

TEST(WhiteSpace, NothingIsLeftOfATextThatIsAllWhiteSpace) {
    EXPECT_EQ(trimmedWhiteSpace(""), "");
    EXPECT_EQ(trimmedWhiteSpace(" "), "");
    EXPECT_EQ(trimmedWhiteSpace(test::utf8Of(whiteSpace)), "");
}

TEST(WhiteSpace, TheResultIsAPartOfTheText) {
    const std::string_view text = "\u2003a\u2003";
    const std::string_view trimmed = trimmedWhiteSpace(text);
    EXPECT_EQ(trimmed.data(), text.data() + 3);
    EXPECT_EQ(trimmed.size(), 1u);
}

TEST(WhiteSpace, CharactersThatOnlyLookEmptyStay) {
    for (const std::string_view invisible :
         {"\0"sv, "\u200B"sv, "\u180E"sv, "\uFEFF"sv, "\u2060"sv, "\x1F"sv, "\u2800"sv})
        EXPECT_EQ(trimmedWhiteSpace(invisible), invisible);
}

TEST(WhiteSpace, ExactlyTheCharactersWithThePropertyAreTrimmed) {
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (scalar == 0xD800)
            scalar = 0xE000;
        const std::u32string around{scalar, U'\u00E1', scalar};
        const bool isWhiteSpace = whiteSpace.find(scalar) != std::u32string_view::npos;
        const std::string text = test::utf8Of(around);
        ASSERT_EQ(trimmedWhiteSpace(text), isWhiteSpace ? std::string_view("\u00E1") : std::string_view(text))
            << std::hex << static_cast<unsigned>(scalar);
    }
}

} // namespace
} // namespace quelm
