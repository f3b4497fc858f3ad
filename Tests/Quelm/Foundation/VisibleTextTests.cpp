#include "Quelm/Foundation/VisibleText.h"
#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

struct VisibleCase {
    std::string_view text;
    const char16_t* shown;
};

class VisibleTextTests : public testing::TestWithParam<VisibleCase> {};

TEST_P(VisibleTextTests, ShowsEveryCharacterAsASignOfOneLine) {
    const VisibleText visible = visibleText(GetParam().text, 100);
    EXPECT_EQ(visible.text, QString::fromUtf16(GetParam().shown));
    EXPECT_FALSE(visible.isCut);
}

INSTANTIATE_TEST_SUITE_P(Texts, VisibleTextTests,
                         testing::Values(VisibleCase{"", u""}, VisibleCase{"año 2024", u"año 2024"},
                                         VisibleCase{"a\nb", u"a⏎b"}, VisibleCase{"a\r\nb", u"a␍⏎b"},
                                         VisibleCase{"a\tb", u"a⇥b"}, VisibleCase{std::string_view("\0", 1), u"␀"},
                                         VisibleCase{"\x1b[0m", u"␛[0m"}, VisibleCase{"\x7f", u"␡"},
                                         VisibleCase{"\u0085", u"\\u0085"}, VisibleCase{"a\u2028b\u2029c", u"a⏎b⏎c"},
                                         // NOLINTNEXTLINE(misc-misleading-bidirectional): that is the point.
                                         VisibleCase{"\u202Eabc", u"\\u202Eabc"},
                                         VisibleCase{"\u2066x\u2069", u"\\u2066x\\u2069"},
                                         VisibleCase{"\uFEFF{}", u"\\uFEFF{}"}, VisibleCase{"שלום", u"שלום"},
                                         VisibleCase{"👩‍👩‍👧", u"👩‍👩‍👧"}));

TEST(VisibleTextTests, ALongTextIsCutAtACharacterAndSaysSo) {
    const std::string text = "áéíóú";
    EXPECT_EQ(visibleText(text, 3).text, QStringLiteral("áéí…"));
    EXPECT_TRUE(visibleText(text, 3).isCut);
    EXPECT_EQ(visibleText(text, 5).text, QStringLiteral("áéíóú"));
    EXPECT_FALSE(visibleText(text, 5).isCut);
}

TEST(VisibleTextTests, ACharacterOfManyBytesIsNotCutInTheMiddle) {
    EXPECT_EQ(visibleText("👩‍👩‍👧👩‍👩‍👧", 1).text, QStringLiteral("👩‍👩‍👧…"));
}

TEST(VisibleTextTests, MarksPiledUpOnOneCharacterAreCutToo) {
    std::string text = "a";
    for (int mark = 0; mark < 1'000'000; ++mark)
        text += "\u0301";
    const VisibleText visible = visibleText(text, 100);
    EXPECT_TRUE(visible.isCut);
    EXPECT_LE(visible.text.size(), 3000);
    EXPECT_FALSE(visible.text.contains(QChar::ReplacementCharacter));
}

} // namespace
} // namespace quelm
