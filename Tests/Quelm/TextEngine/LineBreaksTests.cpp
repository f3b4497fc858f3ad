#include "Quelm/TextEngine/LineBreaks.h"

#include <QString>

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(LineBreaks, WordsEndAfterTheirSpaces) {
    const QString text = u"uno dos  tres"_qs;
    const LineBreaks breaks(text);
    EXPECT_EQ(breaks.lastUpTo(3), 0);
    EXPECT_EQ(breaks.lastUpTo(4), 4);
    EXPECT_EQ(breaks.lastUpTo(8), 4);
    EXPECT_EQ(breaks.lastUpTo(12), 9);
    EXPECT_EQ(breaks.lastUpTo(13), 13);
}

TEST(LineBreaks, IdeographsAreWordsOfOneCharacter) {
    const QString text = u"漢字。"_qs;
    const LineBreaks breaks(text);
    EXPECT_EQ(breaks.lastUpTo(1), 1);
    // A full stop never begins a row.
    EXPECT_EQ(breaks.lastUpTo(2), 1);
}

TEST(LineBreaks, OneTextAfterTheOtherIsLookedAt) {
    for (const QString& text : {u"a b"_qs, u"ab c"_qs}) {
        const LineBreaks breaks(text);
        EXPECT_EQ(breaks.lastUpTo(text.size() - 1), text.size() - 1);
    }
}

} // namespace
} // namespace quelm
