#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/JSONText.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;

/// The path of the only member of an object, which has that key.
std::string pathOfKey(std::string_view key) {
    JSONTree tree(NodeKind::object);
    const NodeID member = tree.addNode(NodeKind::null, key, "");
    tree.attach(member, tree.root(), 0);
    return tree.path(member);
}

TEST(JSONTreePath, OfTheTopLevelValueIsADollarSign) {
    const JSONTree tree = parsed("[1]");
    EXPECT_EQ(tree.path(tree.root()), "$");
    EXPECT_EQ(tree.path(JSONTree::holder), "$");
}

TEST(JSONTreePath, OfMembersAndElementsGoesFromTheTopDown) {
    const JSONTree tree = parsed(R"({"name":1,"items":[0,1,{"a b":[[true]]}]})");
    EXPECT_EQ(tree.path(nodeAt(tree, {0})), "$.name");
    EXPECT_EQ(tree.path(nodeAt(tree, {1})), "$.items");
    EXPECT_EQ(tree.path(nodeAt(tree, {1, 2})), "$.items[2]");
    EXPECT_EQ(tree.path(nodeAt(tree, {1, 2, 0})), "$.items[2][\"a b\"]");
    EXPECT_EQ(tree.path(nodeAt(tree, {1, 2, 0, 0, 0})), "$.items[2][\"a b\"][0][0]");
}

TEST(JSONTreePath, WritesIdentifiersAfterADot) {
    for (const std::string_view key :
         {"a", "Z", "_", "$", "_x$9", "name", "camelCase", "a1", "$0", "__proto__", "null"})
        EXPECT_EQ(pathOfKey(key), "$." + std::string(key));
}

TEST(JSONTreePath, WritesAllOtherKeysInBrackets) {
    for (const std::string_view key :
         {"", "1a", "0", " ", "a b", "a-b", "a.b", "[0]", "ñ", "añ", "é", "😀", "a\nb", "a ", "名前"})
        EXPECT_EQ(pathOfKey(key), "$[\"" + std::string(key) + "\"]");
    EXPECT_EQ(pathOfKey(std::string_view("a\0", 2)), std::string("$[\"a\0\"]", 7));
}

TEST(JSONTreePath, EscapesQuotationMarksAndBackslashesInBrackets) {
    EXPECT_EQ(pathOfKey(R"(x"y)"), R"($["x\"y"])");
    EXPECT_EQ(pathOfKey(R"(x\y)"), R"($["x\\y"])");
    EXPECT_EQ(pathOfKey(R"(\")"), R"($["\\\""])");
    EXPECT_EQ(pathOfKey(R"("")"), R"($["\"\""])");
}

TEST(JSONTreePath, OfADetachedSubtreeStartsAtItsTop) {
    JSONTree tree = parsed(R"({"a":{"b":[1]}})");
    const NodeID top = nodeAt(tree, {0});
    const NodeID element = nodeAt(tree, {0, 0, 0});
    tree.detach(top);
    EXPECT_EQ(tree.path(top), "$");
    EXPECT_EQ(tree.path(element), "$.b[0]");
}

TEST(JSONTreePath, FollowsTheNodeWhenSiblingsComeAndGo) {
    JSONTree tree = parsed("[10,20,30]");
    const NodeID last = nodeAt(tree, {2});
    tree.detach(nodeAt(tree, {0}));
    EXPECT_EQ(tree.path(last), "$[1]");
    tree.attach(tree.addNode(NodeKind::null, "", ""), tree.root(), 0);
    tree.attach(tree.addNode(NodeKind::null, "", ""), tree.root(), 0);
    EXPECT_EQ(tree.path(last), "$[3]");
}

TEST(JSONTreePath, OfAnElementDoesNotUseItsKey) {
    JSONTree tree = parsed(R"([{"a":1}])");
    const NodeID element = nodeAt(tree, {0});
    tree.apply(TreeEdit::setKey(element, "k"));
    EXPECT_EQ(tree.path(element), "$[0]");
}

} // namespace
} // namespace quelm
