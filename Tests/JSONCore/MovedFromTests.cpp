// What was moved from is empty, or says so.

#include "JSONCore/JSONContent.h"
#include "JSONCore/JSONParser.h"
#include "JSONCore/TreeOutline.h"

#include <gtest/gtest.h>
#include <utility>

namespace quelm {
namespace {

JSONTree sample() {
    return JSONParser::parse(TextRope(SharedText("{\"a\":1,\"b\":[true]}"))).value();
}

TEST(MovedFrom, AnOutlineIsEmptyAndCanBeFilledAnew) {
    const JSONTree tree = sample();
    TreeOutline outline;
    outline.rebuild(tree);
    const TreeOutline taken = std::move(outline);
    EXPECT_EQ(taken.rowCount(), 3);
    EXPECT_EQ(outline.rowCount(), 0);
    EXPECT_FALSE(outline.expanded().contains(tree.root()));
    outline.rebuild(tree);
    EXPECT_EQ(outline.rowCount(), 3);
    outline.checkInvariants(tree);
}

TEST(MovedFrom, ATextIsEmpty) {
    SharedText text("hola");
    const SharedText taken = std::move(text);
    EXPECT_EQ(taken.view(), "hola");
    EXPECT_TRUE(text.empty());
    EXPECT_FALSE(text.isPadded());
}

TEST(MovedFrom, AContentHoldsAnEmptyText) {
    JSONContent content = JSONContent::fromText(TextRope(SharedText("[1,2]")));
    {
        const JSONContent taken = std::move(content);
    }
    ASSERT_TRUE(content.text.has_value());
    EXPECT_TRUE(content.text->isEmpty());
}

TEST(MovedFromDeathTest, ATreeIsNotUsed) {
    JSONTree tree = sample();
    const JSONTree taken = std::move(tree);
    EXPECT_DEATH((void)tree.nodeCount(), "moved from");
    EXPECT_DEATH((void)(tree == taken), "moved from");
    tree = taken;
    EXPECT_EQ(tree.nodeCount(), 4);
}

} // namespace
} // namespace quelm
