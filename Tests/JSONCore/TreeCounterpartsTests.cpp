#include "JSONCore/TreeCounterparts.h"
#include "Tests/JSONCore/Support/OpenedOutline.h"

#include <gtest/gtest.h>
#include <random>
#include <stop_token>

namespace quelm {
namespace {

using test::Opened;
using test::rowsText;

/// The rows of the second document, opened as far as the first is.
std::string carried(const Opened& from, const Opened& to) {
    const TreeOutline outline = TreeCounterparts(from.tree, to.tree).outline(from.outline);
    outline.checkInvariants(to.tree);
    return rowsText(outline, to.tree);
}

TEST(TreeCounterparts, FindMembersByKeyWhereverTheyAre) {
    const Opened from(R"({"a":{"x":1,"y":2},"b":[3]})");
    const Opened to(R"({"new":0,"b":[30,31],"a":{"z":0,"y":20}})");
    const TreeCounterparts counterparts(from.tree, to.tree);
    EXPECT_EQ(counterparts.find(from.at({})), to.at({}));
    EXPECT_EQ(counterparts.find(from.at({0})), to.at({2}));
    EXPECT_EQ(counterparts.find(from.at({0, 1})), to.at({2, 1}));
    EXPECT_EQ(counterparts.find(from.at({0, 0})), std::nullopt);
    EXPECT_EQ(counterparts.findNearest(from.at({0, 0})), to.at({2}));
    EXPECT_EQ(counterparts.find(from.at({1, 0})), to.at({1, 0}));
}

TEST(TreeCounterparts, FindElementsByIndex) {
    const Opened from("[[1],[2,3],[4]]");
    const Opened to("[[10],[20]]");
    const TreeCounterparts counterparts(from.tree, to.tree);
    EXPECT_EQ(counterparts.find(from.at({1, 0})), to.at({1, 0}));
    EXPECT_EQ(counterparts.find(from.at({1, 1})), std::nullopt);
    EXPECT_EQ(counterparts.findNearest(from.at({1, 1})), to.at({1}));
    EXPECT_EQ(counterparts.findNearest(from.at({2, 0})), to.at({}));
}

TEST(TreeCounterparts, TellEqualKeysApartByTheirOrder) {
    const Opened from(R"({"a":[1],"b":0,"a":[2],"a":[3]})");
    const Opened to(R"({"a":[10],"a":[20]})");
    const TreeCounterparts counterparts(from.tree, to.tree);
    EXPECT_EQ(counterparts.find(from.at({0})), to.at({0}));
    EXPECT_EQ(counterparts.find(from.at({2})), to.at({1}));
    EXPECT_EQ(counterparts.find(from.at({3})), std::nullopt);
}

TEST(TreeCounterparts, AreNotFoundInContainersOfAnotherKind) {
    const Opened from(R"({"a":[1]})");
    const Opened to(R"({"a":{"0":1}})");
    const TreeCounterparts counterparts(from.tree, to.tree);
    EXPECT_EQ(counterparts.find(from.at({0})), to.at({0}));
    EXPECT_EQ(counterparts.find(from.at({0, 0})), std::nullopt);
}

TEST(TreeCounterparts, OfDetachedNodesAreNotFound) {
    Opened from("[[1],2]");
    const Opened to("[[1],2]");
    const NodeID element = from.at({0});
    const NodeID below = from.at({0, 0});
    from.tree.detach(element);
    const TreeCounterparts counterparts(from.tree, to.tree);
    EXPECT_EQ(counterparts.find(element), std::nullopt);
    EXPECT_EQ(counterparts.find(below), std::nullopt);
    EXPECT_EQ(counterparts.find(JSONTree::holder), std::nullopt);
    EXPECT_EQ(counterparts.findNearest(below), to.at({}));
}

TEST(TreeCounterparts, KeepMembersExpandedWhenOthersComeBeforeThem) {
    Opened from(R"({"a":{"x":[1]},"b":{"y":2},"c":[3]})");
    from.expand({0});
    from.expand({2});
    const Opened to(R"({"new":[9],"a":{"w":{},"x":[1]},"b":{"y":2},"c":[3,4]})");
    EXPECT_EQ(carried(from, to), "$ object 4 open\n"
                                 "  \"new\" array 1\n"
                                 "  \"a\" object 2 open\n"
                                 "    \"w\" object 0\n"
                                 "    \"x\" array 1\n"
                                 "  \"b\" object 1\n"
                                 "  \"c\" array 2 open\n"
                                 "    [0] number 3\n"
                                 "    [1] number 4\n");
}

TEST(TreeCounterparts, ForgetTheExpansionOfWhatIsGone) {
    Opened from(R"({"a":[1],"b":[2]})");
    from.expand({0});
    const Opened to(R"({"b":[2]})");
    EXPECT_EQ(carried(from, to), "$ object 1 open\n"
                                 "  \"b\" array 1\n");
}

TEST(TreeCounterparts, KeepDuplicateKeysExpandedInTheirOrder) {
    Opened from(R"({"a":[1],"a":[2],"b":0})");
    from.expand({1});
    const Opened to(R"({"b":0,"a":[1],"a":[2]})");
    EXPECT_EQ(carried(from, to), "$ object 3 open\n"
                                 "  \"b\" number 0\n"
                                 "  \"a\"* array 1\n"
                                 "  \"a\"* array 1 open\n"
                                 "    [0] number 2\n");
}

TEST(TreeCounterparts, KeepWhatIsExpandedBelowACollapsedContainer) {
    Opened from(R"({"z":[[0]],"a":{"b":{"c":1}}})");
    from.expandAll({1});
    from.collapse({1});
    Opened to(R"({"a":{"b":{"c":2}}})");
    to.outline = TreeCounterparts(from.tree, to.tree).outline(from.outline);
    EXPECT_EQ(to.rows(), "$ object 1 open\n"
                         "  \"a\" object 1\n");
    to.expand({0});
    EXPECT_EQ(to.rows(), "$ object 1 open\n"
                         "  \"a\" object 1 open\n"
                         "    \"b\" object 1 open\n"
                         "      \"c\" number 2\n");
}

TEST(TreeCounterparts, LeaveACollapsedTopLevelValueCollapsed) {
    Opened from("[[1]]");
    from.collapse({});
    EXPECT_EQ(carried(from, Opened("[[1],2]")), "$ array 2\n");
}

TEST(TreeCounterparts, OfScalarsAtTheTopHaveOneRow) {
    Opened from("[[1]]");
    EXPECT_EQ(carried(from, Opened("42")), "$ number 42\n");
    EXPECT_EQ(carried(Opened("42"), Opened("[1]")), "$ array 1 open\n"
                                                    "  [0] number 1\n");
}

TEST(TreeCounterparts, EndSoonWhenAskedTo) {
    Opened from("[[1]]");
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(TreeCounterparts(from.tree, from.tree).outline(from.outline, source.get_token()).rowCount(), 0);
}

/// Random members, some of equal keys.
std::string randomObject(std::mt19937& random, int depth) {
    std::string text = "{";
    const int count = static_cast<int>(random() % 5);
    for (int member = 0; member < count; ++member) {
        text += member > 0 ? ",\"" : "\"";
        text += static_cast<char>('a' + random() % 3);
        text += "\":";
        const auto kind = depth == 0 ? 0 : random() % 3;
        text += kind == 0   ? "1"
                : kind == 1 ? randomObject(random, depth - 1)
                            : "[" + randomObject(random, depth - 1) + ",[]]";
    }
    return text + "}";
}

std::string pathWithOccurrences(const JSONTree& tree, NodeID node) {
    const std::optional<NodeID> parent = tree.parent(node);
    if (!parent || *parent == JSONTree::holder)
        return "$";
    if (tree.kind(*parent) == NodeKind::array)
        return pathWithOccurrences(tree, *parent) + "[" + std::to_string(tree.indexInParent(node).value()) + "]";
    int occurrence = 0;
    for (const NodeID sibling : tree.children(*parent)) {
        if (sibling == node)
            break;
        occurrence += tree.key(sibling) == tree.key(node) ? 1 : 0;
    }
    return pathWithOccurrences(tree, *parent) + "." + std::string(tree.key(node)) + "#" + std::to_string(occurrence);
}

TEST(TreeCounterparts, AreThoseOfTheSamePathInRandomDocuments) {
    std::mt19937 random(42);
    for (int round = 0; round < 200; ++round) {
        Opened from(randomObject(random, 3));
        Opened to(randomObject(random, 3));
        std::unordered_map<std::string, NodeID> byPath;
        for (std::int32_t raw = 1; raw < to.tree.storedNodeCount(); ++raw)
            byPath[pathWithOccurrences(to.tree, NodeID{raw})] = NodeID{raw};
        for (std::int32_t raw = 1; raw < from.tree.storedNodeCount(); ++raw)
            if (random() % 2 == 0)
                from.outline.setExpanded(NodeID{raw}, true, false, from.tree);

        const TreeCounterparts counterparts(from.tree, to.tree);
        const TreeOutline outline = counterparts.outline(from.outline);
        outline.checkInvariants(to.tree);
        for (std::int32_t raw = 1; raw < from.tree.storedNodeCount(); ++raw) {
            const NodeID node{raw};
            const auto expected = byPath.find(pathWithOccurrences(from.tree, node));
            const std::optional<NodeID> found = counterparts.find(node);
            ASSERT_EQ(found.has_value(), expected != byPath.end());
            if (!found)
                continue;
            EXPECT_EQ(*found, expected->second);
            const bool isSameKind = from.tree.kind(node) == to.tree.kind(*found);
            if (isSameKind && isContainer(from.tree.kind(node))) {
                EXPECT_EQ(outline.expanded().contains(*found), from.outline.expanded().contains(node));
            }
        }
    }
}

} // namespace
} // namespace quelm
