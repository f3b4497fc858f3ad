#include "Quelm/TextEngine/LayoutCache.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

struct Part final : LayoutPart {
    void forgetColors() const override {}
};

std::shared_ptr<const LayoutPart> part() {
    return std::make_shared<const Part>();
}

TEST(LayoutCache, ThePartThatWasUsedLongestAgoGivesWay) {
    LayoutCache cache;
    for (qint64 line = 0; line < static_cast<qint64>(LayoutCache::capacity); ++line)
        cache.insert({line}, part());
    EXPECT_TRUE(cache.find({0}));
    cache.insert({-1}, part());
    EXPECT_EQ(cache.count(), static_cast<int>(LayoutCache::capacity));
    EXPECT_TRUE(cache.find({0}));
    EXPECT_FALSE(cache.find({1}));
    EXPECT_TRUE(cache.find({2}));
}

TEST(LayoutCache, AnEditMovesThePartsOfLaterLines) {
    LayoutCache cache;
    for (qint64 line = 0; line < 6; ++line)
        cache.insert({line}, part());
    const std::shared_ptr<const LayoutPart> fifth = cache.find({4});
    cache.noteEditedLines(1, 2, 3, 0);
    EXPECT_TRUE(cache.find({0}));
    EXPECT_FALSE(cache.find({1}));
    EXPECT_FALSE(cache.find({4}));
    EXPECT_EQ(cache.find({7}), fifth);
    EXPECT_EQ(cache.count(), 4);
    // Parts that were moved give way in their turn.
    for (qint64 line = 100; line < 100 + static_cast<qint64>(LayoutCache::capacity); ++line)
        cache.insert({line}, part());
    EXPECT_FALSE(cache.find({7}));
    EXPECT_EQ(cache.count(), static_cast<int>(LayoutCache::capacity));
}

TEST(LayoutCache, ALongLineKeepsThePartsBeforeAnEdit) {
    LayoutCache cache;
    for (qint64 segment = -1; segment < 5; ++segment)
        cache.insert({3, segment}, part());
    cache.noteEditedLines(3, 3, 0, 2);
    EXPECT_FALSE(cache.find({3, LayoutCache::wholeLine}));
    EXPECT_TRUE(cache.find({3, 1}));
    EXPECT_FALSE(cache.find({3, 2}));
    cache.dropLine(3);
    EXPECT_EQ(cache.count(), 0);
}

} // namespace
} // namespace quelm
