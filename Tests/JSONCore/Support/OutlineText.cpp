#include "Tests/JSONCore/Support/OutlineText.h"

#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm::test {

std::string rowsText(const TreeOutline& outline, const JSONTree& tree) {
    std::string text;
    for (std::int64_t index = 0; index < outline.rowCount(); ++index) {
        const TreeRow row = outline.row(index, tree);
        EXPECT_EQ(outline.rowID(index), row.id);
        EXPECT_EQ(outline.rowDepth(index), row.depth);
        EXPECT_EQ(outline.index(row.id), index);
        text += describe(row) + "\n";
    }
    outline.checkInvariants(tree);
    return text;
}

} // namespace quelm::test
