#include "Quelm/Foundation/Appearance.h"
#include "Quelm/TreeEditor/TreeRowCache.h"
#include "Tests/Quelm/Support/EditedTreeTest.h"

namespace quelm {
namespace {

class TreeRowCacheTests : public EditedTreeTest {
protected:
    const TreeRowContents& contents(std::int64_t row) { return cache.contents(row, *editor, style); }

    TreeRowCache cache;
    TreeRowStyle style{ownPalette(Appearance::light)};
};

TEST_F(TreeRowCacheTests, ARowIsMadeOnce) {
    open("[1,2]");
    const TreeRowContents* first = &contents(1);
    EXPECT_EQ(contents(2).value, QStringLiteral("2"));
    EXPECT_EQ(&contents(1), first);
}

TEST_F(TreeRowCacheTests, AfterAClearRowsAreMadeAnew) {
    open("[1]", {0});
    EXPECT_EQ(contents(1).value, QStringLiteral("1"));
    enter("2", Field::value);
    EXPECT_EQ(contents(1).value, QStringLiteral("1"));
    cache.clear();
    EXPECT_EQ(contents(1).value, QStringLiteral("2"));
}

TEST_F(TreeRowCacheTests, OfManyRowsThoseOutsideAreForgotten) {
    open(arrayOfZeros(2000), {0});
    for (std::int64_t row = 0; row <= 2000; ++row)
        contents(row);
    enter("2", Field::value);
    cache.keepOnly(1000, 1010);
    EXPECT_EQ(contents(1).value, QStringLiteral("2")) << "made anew";
}

} // namespace
} // namespace quelm
