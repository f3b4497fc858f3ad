#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Models/NaiveOutline.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm::test {

namespace {

bool isSameLabel(const TreeRow::Label& left, const TreeRow::Label& right) {
    if (left.asKey() && right.asKey())
        return *left.asKey() == *right.asKey();
    return left == right;
}

bool isSameRow(const TreeRow& left, const TreeRow& right) {
    return left.id == right.id && left.depth == right.depth && isSameLabel(left.label, right.label) &&
           left.kind == right.kind && left.value == right.value && left.childCount == right.childCount &&
           left.isExpanded == right.isExpanded && left.isDuplicateKey == right.isDuplicateKey;
}

} // namespace

void expectSameRows(const TreeOutline& outline, const JSONTree& tree, const NaiveOutline& model) {
    const auto& expected = model.rows();
    ASSERT_EQ(outline.rowCount(), static_cast<std::int64_t>(expected.size()));
    std::vector<std::int64_t> positions(static_cast<std::size_t>(tree.storedNodeCount()), -1);
    for (std::int64_t i = 0; i < outline.rowCount(); ++i) {
        const TreeRow& mustBe = expected[static_cast<std::size_t>(i)];
        const TreeRow row = outline.row(i, tree);
        ASSERT_TRUE(isSameRow(row, mustBe)) << "row " << i << "\n  is      #" << row.id.raw << ' ' << describe(row)
                                            << "\n  must be #" << mustBe.id.raw << ' ' << describe(mustBe);
        ASSERT_EQ(outline.rowID(i), mustBe.id) << "row " << i;
        ASSERT_EQ(outline.rowDepth(i), mustBe.depth) << "row " << i;
        positions[static_cast<std::size_t>(mustBe.id.raw)] = i;
    }
    for (NodeID id{0}; id.raw < tree.storedNodeCount(); ++id.raw) {
        ASSERT_EQ(outline.index(id).value_or(-1), positions[static_cast<std::size_t>(id.raw)]) << "node #" << id.raw;
        ASSERT_EQ(outline.expanded().contains(id), model.isInExpanded(id)) << "node #" << id.raw;
    }
}

} // namespace quelm::test
