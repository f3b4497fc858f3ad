#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/UTF16.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

std::u16string toUTF16(std::string_view text) {
    std::u16string units = u">";
    utf16::append(units, text);
    return units.substr(1);
}

TEST(UTF16, TextGoesThereAndBack) {
    for (const char16_t* units :
         {u"", u"abc", u"ma\u00F1ana", u"\uFEFFx\u0000y", u"\u4E2D\u6587", u"a\U0001F600b\U0010FFFF"}) {
        const std::u16string text(units);
        EXPECT_EQ(toUTF16(utf16::toUTF8(text)), text);
    }
}

TEST(UTF16, AByteOrderMarkIsACharacterLikeOthers) {
    EXPECT_EQ(utf16::toUTF8(u"\uFEFF{}"), "\xEF\xBB\xBF{}");
    EXPECT_EQ(toUTF16("\xEF\xBB\xBF{}"), u"\uFEFF{}");
}

TEST(UTF16, EachLoneSurrogateBecomesAReplacementCharacter) {
    const char16_t high = 0xD83D;
    const char16_t low = 0xDE00;
    EXPECT_EQ(utf16::toUTF8(std::u16string{high}), "\uFFFD");
    EXPECT_EQ(utf16::toUTF8(std::u16string{low}), "\uFFFD");
    EXPECT_EQ(utf16::toUTF8(std::u16string{low, high}), "\uFFFD\uFFFD");
    EXPECT_EQ(utf16::toUTF8(std::u16string{u'a', high, high, low, u'b'}), "a\uFFFD\U0001F600b");
}

TEST(UTF16, RandomTextGoesThereAndBack) {
    std::mt19937 random(5);
    for (int turn = 0; turn < 2000; ++turn) {
        const std::string text =
            test::randomText(random, U"abc \n\u00E9\u0301\u07FF\u0800\u4E2D\uFFFF\U00010000\U0001F600", turn % 200);
        ASSERT_EQ(utf16::toUTF8(toUTF16(text)), text);
    }
}

} // namespace
} // namespace quelm
