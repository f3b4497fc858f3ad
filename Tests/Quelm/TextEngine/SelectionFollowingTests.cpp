#include "Quelm/TextEngine/SelectionFollowing.h"
#include "TextCore/TextRope.h"

#include <QString>

#include <gtest/gtest.h>

namespace quelm {
namespace {

/// Where a caret is after a stretch of a text was replaced.
qint64 followed(qint64 caret, std::u16string_view text, TextRange replaced, std::u16string_view replacement) {
    const auto start = static_cast<std::size_t>(replaced.location);
    std::u16string after(text);
    after.replace(start, static_cast<std::size_t>(replaced.length), replacement);
    const auto length = static_cast<qint64>(replacement.size());
    return followedSelection(TextSelection::at(caret), TextRope::repairing(text), TextRope::repairing(after),
                             {replaced.location, length}, length - replaced.length)
        .caret;
}

TEST(SelectionFollowingTests, PlacesBeforeTheEditStayAndThoseAfterItMove) {
    EXPECT_EQ(followed(1, u"abcdef", {2, 2}, u"xyz"), 1);
    EXPECT_EQ(followed(4, u"abcdef", {2, 2}, u"xyz"), 5);
    EXPECT_EQ(followed(6, u"abcdef", {2, 2}, u""), 4);
}

TEST(SelectionFollowingTests, APlaceWhereTextIsInsertedStaysBeforeIt) {
    EXPECT_EQ(followed(2, u"abcdef", {2, 0}, u"xyz"), 2);
}

TEST(SelectionFollowingTests, APlaceInTheReplacedStretchStaysAsFarInAsThatReaches) {
    EXPECT_EQ(followed(3, u"abcdef", {1, 4}, u"wxyz"), 3);
    EXPECT_EQ(followed(4, u"abcdef", {1, 4}, u"x"), 2);
}

TEST(SelectionFollowingTests, APlaceIsNeverWithinASurrogatePair) {
    EXPECT_EQ(followed(2, u"abcdef", {1, 4}, u"😀"), 1);
    EXPECT_EQ(followed(1, u"abc", {0, 3}, u"😀😀"), 0);
}

TEST(SelectionFollowingTests, InAWholeNewTextAPlaceKeepsItsLineAndColumn) {
    EXPECT_EQ(followed(4, u"a\nbcd\ne", {0, 7}, u"uno\ndos\ntres"), 6);
    EXPECT_EQ(followed(6, u"a\nbcd\ne", {0, 7}, u"uno\ndos\ntres"), 8);
}

TEST(SelectionFollowingTests, AColumnPastTheEndOfItsLineBecomesTheEnd) {
    EXPECT_EQ(followed(5, u"a\nbcd\ne", {0, 7}, u"uno\nd\ntres"), 5);
    EXPECT_EQ(followed(3, u"abc", {0, 3}, u"x"), 1);
}

TEST(SelectionFollowingTests, ALinePastTheEndOfTheTextBecomesTheEnd) {
    EXPECT_EQ(followed(6, u"a\nbcd\ne", {0, 7}, u"uno\ndos"), 7);
    EXPECT_EQ(followed(6, u"a\nbcd\ne", {0, 7}, u""), 0);
}

} // namespace
} // namespace quelm
