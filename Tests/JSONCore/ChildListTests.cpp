#include "JSONCore/ChildList.h"
#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::parsed;

std::vector<NodeID> listed(const ChildList& list) {
    std::vector<NodeID> ids;
    for (const NodeID id : list)
        ids.push_back(id);
    return ids;
}

/// An array of that many zeros. Its elements have the ids from 2 on.
JSONTree arrayOf(std::int64_t count) {
    std::string text = "[0";
    text += test::repeated(",0", static_cast<std::size_t>(count - 1));
    return parsed(text + "]");
}

TEST(ChildList, OfAScalarOrAnEmptyContainerIsEmpty) {
    const JSONTree tree = parsed(R"([1,[],{}])");
    for (const NodeID child : tree.children(tree.root())) {
        const ChildList list = tree.children(child);
        EXPECT_TRUE(list.empty());
        EXPECT_EQ(list.size(), 0);
        EXPECT_EQ(list.begin(), list.end());
        EXPECT_EQ(list.indexOf(NodeID{1}), -1);
    }
    EXPECT_TRUE(ChildList().empty());
    EXPECT_EQ(ChildList().begin(), ChildList().end());
}

TEST(ChildList, GivesChildrenInDocumentOrder) {
    const JSONTree tree = parsed(R"([1,[2,3],4])");
    const ChildList list = tree.children(tree.root());
    EXPECT_FALSE(list.empty());
    EXPECT_EQ(list.size(), 3);
    EXPECT_EQ(list.front(), NodeID{2});
    EXPECT_EQ(list[1], NodeID{3});
    EXPECT_EQ(list.back(), NodeID{6});
    EXPECT_THAT(listed(list), testing::ElementsAre(NodeID{2}, NodeID{3}, NodeID{6}));
    EXPECT_EQ(list.indexOf(NodeID{6}), 2);
    EXPECT_EQ(list.indexOf(NodeID{4}), -1);
}

TEST(ChildList, IteratorsStepByPrefixAndSuffix) {
    const JSONTree tree = parsed("[1,2]");
    auto at = tree.children(tree.root()).begin();
    EXPECT_EQ(*at++, NodeID{2});
    EXPECT_EQ(*at, NodeID{3});
    EXPECT_EQ(++at, tree.children(tree.root()).end());
}

TEST(ChildList, ReadsTheSameByIndexAndByIterationAtEverySize) {
    for (const std::int64_t count : {1, 2, 15, 16, 17, 1'000, 4'095, 4'096, 4'097, 16'384, 16'385, 50'000}) {
        SCOPED_TRACE(count);
        const JSONTree tree = arrayOf(count);
        const ChildList list = tree.children(tree.root());
        ASSERT_EQ(list.size(), count);
        std::int64_t index = 0;
        for (const NodeID id : list) {
            ASSERT_EQ(id.raw, index + 2);
            ASSERT_EQ(list[index], id);
            ++index;
        }
        ASSERT_EQ(index, count);
        EXPECT_EQ(list.front(), NodeID{2});
        EXPECT_EQ(list.back().raw, count + 1);
        EXPECT_EQ(list.indexOf(NodeID{static_cast<std::int32_t>(count / 2 + 2)}), count / 2);
        EXPECT_EQ(list.indexOf(NodeID{1}), -1);
    }
}

TEST(ChildList, KeepsItsOrderWhileAListGrowsAtTheFront) {
    JSONTree tree(NodeKind::array);
    constexpr std::int32_t count = 40'000;
    for (std::int32_t i = 0; i < count; ++i)
        tree.attach(tree.addNode(NodeKind::null, "", ""), tree.root(), 0);
    const ChildList list = tree.children(tree.root());
    ASSERT_EQ(list.size(), count);
    std::int32_t expected = count + 1;
    for (const NodeID id : list)
        ASSERT_EQ(id.raw, expected--);
    EXPECT_EQ(list.indexOf(NodeID{2}), count - 1);
    EXPECT_EQ(list.indexOf(NodeID{count + 1}), 0);
    tree.checkInvariants();
}

TEST(ChildList, ShrinksBackToNothing) {
    JSONTree tree = arrayOf(20'000);
    while (!tree.children(tree.root()).empty()) {
        const ChildList list = tree.children(tree.root());
        const NodeID middle = list[list.size() / 2];
        ASSERT_TRUE(tree.detach(middle));
    }
    EXPECT_EQ(test::written(tree), "[]");
    tree.checkInvariants();
}

TEST(ChildListDeathTest, StopsAtAnIndexOutsideTheList) {
    const JSONTree small = parsed("[1,2]");
    const ChildList list = small.children(small.root());
    EXPECT_DEATH(list[2], "programming error");
    EXPECT_DEATH(list[-1], "programming error");
    EXPECT_DEATH(ChildList().front(), "programming error");
    EXPECT_DEATH(ChildList().back(), "programming error");
    const JSONTree large = arrayOf(20'000);
    EXPECT_DEATH(large.children(large.root())[20'000], "programming error");
}

} // namespace
} // namespace quelm
