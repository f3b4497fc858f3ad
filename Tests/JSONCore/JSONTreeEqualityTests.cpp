#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/JSONText.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;

TEST(JSONTreeEquality, IgnoresWhiteSpace) {
    EXPECT_EQ(parsed(R"({"a":1,"b":[true]})"), parsed(" {\n\t\"a\" : 1 ,\r\n \"b\" : [ true ] } "));
}

TEST(JSONTreeEquality, IgnoresHowStringsWereWritten) {
    EXPECT_EQ(parsed(R"({"\u0061":"\u00e9\/"})"), parsed(R"({"a":"é/"})"));
}

TEST(JSONTreeEquality, RespectsTheOrderOfMembersAndElements) {
    EXPECT_NE(parsed(R"({"b":[true],"a":1})"), parsed(R"({"a":1,"b":[true]})"));
    EXPECT_NE(parsed("[1,2]"), parsed("[2,1]"));
    EXPECT_NE(parsed(R"({"x":1,"x":2})"), parsed(R"({"x":2,"x":1})"));
}

TEST(JSONTreeEquality, ComparesNumbersAsText) {
    EXPECT_NE(parsed("1.0"), parsed("1"));
    EXPECT_NE(parsed("1e2"), parsed("100"));
    EXPECT_NE(parsed("-0"), parsed("0"));
    EXPECT_EQ(parsed("1.0"), parsed("1.0"));
}

TEST(JSONTreeEquality, RespectsKindsTextsKeysAndCounts) {
    const std::string_view texts[] = {
        "{}",
        "[]",
        "\"\"",
        "null",
        "true",
        "false",
        "\"true\"",
        "\"null\"",
        "1",
        "\"1\"",
        "[[]]",
        "[{}]",
        "[1]",
        "[1,1]",
        "{\"a\":1}",
        "{\"A\":1}",
        "{\"a\":\"1\"}",
        "{\"a\":1,\"b\":1}",
        "{\"b\":1,\"a\":1}",
        "{\"\":1}",
        "[[1],2]",
        "[[1,2]]",
    };
    for (const std::string_view left : texts) {
        for (const std::string_view right : texts)
            EXPECT_EQ(parsed(left) == parsed(right), left == right) << left << " and " << right;
    }
}

TEST(JSONTreeEquality, ComparesTextsByCanonicalEquivalence) {
    EXPECT_EQ(parsed("{\"e\u0301\":\"A\u030A\"}"), parsed("{\"\u00E9\":\"\u212B\"}"));
    EXPECT_NE(parsed("\"\uFB01\""), parsed("\"fi\""));
    EXPECT_NE(parsed("\"E\u0301\""), parsed("\"\u00E9\""));
}

TEST(JSONTreeEquality, IgnoresDetachedNodesAndIds) {
    JSONTree tree = parsed(R"([0,{"a":1}])");
    tree.addNode(NodeKind::string, "k", "v");
    tree.detach(nodeAt(tree, {0}));
    const NodeID added = tree.addNode(NodeKind::null, "", "");
    tree.attach(added, tree.root(), 0);
    EXPECT_EQ(tree, parsed(R"([null,{"a":1}])"));
    EXPECT_NE(tree.storedNodeCount(), parsed(R"([null,{"a":1}])").storedNodeCount());
}

TEST(JSONTreeEquality, IgnoresTheKeysOfElementsAndOfTheTopLevelValue) {
    JSONTree tree = parsed("[1,2]");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {0}), "k"));
    tree.apply(TreeEdit::setKey(tree.root(), "r"));
    EXPECT_EQ(tree, parsed("[1,2]"));
}

TEST(JSONTreeEquality, SeesADifferenceAnywhereInALargeTree) {
    std::string text = "[";
    for (int i = 0; i < 30'000; ++i)
        text += (i ? ",{\"a\":" : "{\"a\":") + std::to_string(i) + "}";
    text += "]";
    const JSONTree tree = parsed(text);
    for (const std::int64_t position : {0, 1, 15'000, 29'999}) {
        JSONTree changed = tree;
        const NodeID value = nodeAt(changed, {position, 0});
        const TreeEdit undo = changed.apply(TreeEdit::setValue(value, NodeKind::number, "-1"));
        EXPECT_NE(changed, tree);
        changed.apply(undo);
        EXPECT_EQ(changed, tree);
        changed.apply(TreeEdit::setKey(value, "b"));
        EXPECT_NE(changed, tree);
    }
}

} // namespace
} // namespace quelm
