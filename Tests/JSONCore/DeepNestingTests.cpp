// Documents nested so deeply that any recursion over them would exhaust the stack.

#include "JSONCore/JSONParser.h"
#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>

namespace quelm {
namespace {

using test::parsed;
using test::repeated;
using test::written;

struct Nesting {
    std::size_t levels;
    bool isObject;
};

std::ostream& operator<<(std::ostream& out, const Nesting& nesting) {
    return out << nesting.levels << (nesting.isObject ? " objects" : " arrays");
}

/// Containers within containers, the innermost one empty.
class DeepNesting : public testing::TestWithParam<Nesting> {
protected:
    static std::string text() {
        const auto [levels, isObject] = GetParam();
        return isObject ? repeated("{\"a\":", levels - 1) + "{}" + std::string(levels - 1, '}')
                        : std::string(levels, '[') + std::string(levels, ']');
    }
    static std::int64_t levels() { return static_cast<std::int64_t>(GetParam().levels); }
    static NodeID innermost() { return NodeID{static_cast<std::int32_t>(levels())}; }
    static std::string path() { return "$" + repeated(GetParam().isObject ? ".a" : "[0]", GetParam().levels - 1); }
};

TEST_P(DeepNesting, IsParsedMeasuredAndFollowed) {
    const JSONTree tree = parsed(text());
    EXPECT_EQ(tree.nodeCount(), levels());
    EXPECT_EQ(tree.subtreeSize(tree.root()), levels());
    EXPECT_TRUE(tree.children(innermost()).empty());
    EXPECT_TRUE(tree.path(innermost()) == path());
    tree.checkInvariants();
}

TEST_P(DeepNesting, IsWrittenAsItWasRead) {
    const std::string original = text();
    EXPECT_TRUE(written(parsed(original)) == original);
}

TEST_P(DeepNesting, IsComparedToItsEnd) {
    const JSONTree tree = parsed(text());
    JSONTree other = parsed(text());
    EXPECT_EQ(tree, other);
    other.attach(other.addNode(NodeKind::null, "a", ""), innermost(), 0);
    EXPECT_NE(tree, other);
}

TEST_P(DeepNesting, IsEditedAtItsEnd) {
    JSONTree tree = parsed(text());
    const JSONTree before = tree;
    const auto change = tree.insertChange(innermost(), true);
    ASSERT_TRUE(change);
    const auto inverses = tree.apply(change->edits);
    EXPECT_EQ(tree.nodeCount(), levels() + 1);
    tree.apply(inverses);
    EXPECT_EQ(tree, before);
    tree.detach(NodeID{2});
    EXPECT_EQ(tree.nodeCount(), 1);
    EXPECT_EQ(tree.subtreeSize(NodeID{2}), levels() - 1);
    tree.attach(NodeID{2}, tree.root(), 0);
    EXPECT_EQ(tree, before);
}

TEST_P(DeepNesting, IsCopied) {
    JSONTree tree = parsed(text());
    EXPECT_EQ(tree.subtree(tree.root()), tree);
    const auto change = tree.duplicateChange(NodeID{2});
    ASSERT_TRUE(change);
    tree.apply(change->edits);
    EXPECT_EQ(tree.nodeCount(), 2 * levels() - 1);
    EXPECT_EQ(tree.subtree(*change->focus), tree.subtree(NodeID{2}));
    tree.checkInvariants();
}

TEST_P(DeepNesting, IsExpandedCollapsedAndRevealed) {
    const JSONTree tree = parsed(text());
    TreeOutline outline;
    outline.rebuild(tree);
    EXPECT_EQ(outline.rowCount(), 2);
    outline.setExpanded(tree.root(), true, true, tree);
    ASSERT_EQ(outline.rowCount(), levels());
    EXPECT_EQ(outline.rowID(levels() - 1), innermost());
    EXPECT_EQ(outline.rowDepth(levels() - 1), levels() - 1);
    EXPECT_EQ(outline.index(innermost()), levels() - 1);
    EXPECT_TRUE(outline.row(levels() - 1, tree).isExpanded);
    outline.checkInvariants(tree);
    outline.setExpanded(tree.root(), false, true, tree);
    EXPECT_EQ(outline.rowCount(), 1);
    outline.reveal(innermost(), tree);
    EXPECT_EQ(outline.rowCount(), levels());
    outline.checkInvariants(tree);
}

TEST_P(DeepNesting, IsReportedUnclosedAtItsEnd) {
    const std::string original = text();
    const auto half = static_cast<std::size_t>(levels()) * (GetParam().isObject ? 5 : 1);
    const auto unclosed = JSONParser::parse(test::rope(std::string_view(original).substr(0, half + 100)));
    ASSERT_FALSE(unclosed);
    EXPECT_EQ(unclosed.error().offset, static_cast<std::int64_t>(half) + 100);
    EXPECT_EQ(unclosed.error().message,
              GetParam().isObject ? "Falta '}' para cerrar el objeto" : "Falta ']' para cerrar el arreglo");
}

TEST_P(DeepNesting, IsSortedAndWrittenByObject) {
    const JSONTree tree = parsed(text());
    // Indentation of all levels would be a thousand times the document: the innermost thousand will do.
    NodeID from{static_cast<std::int32_t>(levels() - 999)};
    const std::string pretty = written(tree, from, JSONStyle::pretty(JSONStyle::Indent::tab, true));
    EXPECT_EQ(parsed(pretty).nodeCount(), 1'000);
    EXPECT_EQ(std::count(pretty.begin(), pretty.end(), '\t'), 999 * 999);
}

INSTANTIATE_TEST_SUITE_P(, DeepNesting,
                         testing::Values(Nesting{100'000, false}, Nesting{200'000, false}, Nesting{200'000, true},
                                         Nesting{1'000'000, false}, Nesting{1'000'000, true}));

} // namespace
} // namespace quelm
