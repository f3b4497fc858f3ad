#include "JSONCore/NodeSet.h"
#include "Tests/JSONCore/Support/Random.h"

#include <gtest/gtest.h>
#include <set>

namespace quelm {
namespace {

TEST(NodeSet, StartsEmpty) {
    const NodeSet set;
    EXPECT_TRUE(set.empty());
    EXPECT_EQ(set.size(), 0);
    EXPECT_FALSE(set.contains(NodeID{0}));
    EXPECT_FALSE(set.contains(NodeID{1'000'000}));
}

TEST(NodeSet, TellsWhetherAnInsertionChangedIt) {
    NodeSet set;
    EXPECT_TRUE(set.insert(NodeID{5}));
    EXPECT_FALSE(set.insert(NodeID{5}));
    EXPECT_TRUE(set.contains(NodeID{5}));
    EXPECT_FALSE(set.contains(NodeID{4}));
    EXPECT_FALSE(set.contains(NodeID{6}));
    EXPECT_EQ(set.size(), 1);
    EXPECT_FALSE(set.empty());
}

TEST(NodeSet, TellsWhetherARemovalChangedIt) {
    NodeSet set;
    EXPECT_FALSE(set.remove(NodeID{5}));
    EXPECT_FALSE(set.remove(NodeID{5'000'000}));
    set.insert(NodeID{5});
    EXPECT_TRUE(set.remove(NodeID{5}));
    EXPECT_FALSE(set.remove(NodeID{5}));
    EXPECT_FALSE(set.contains(NodeID{5}));
    EXPECT_TRUE(set.empty());
}

TEST(NodeSet, TakesIdsInAnyOrderFarApart) {
    NodeSet set;
    for (const std::int32_t raw : {3'000'000, 0, 63, 64, 65, 65'535, 65'536})
        EXPECT_TRUE(set.insert(NodeID{raw}));
    EXPECT_EQ(set.size(), 7);
    for (const std::int32_t raw : {3'000'000, 0, 63, 64, 65, 65'535, 65'536})
        EXPECT_TRUE(set.contains(NodeID{raw})) << raw;
    for (const std::int32_t raw : {2'999'999, 3'000'001, 1, 62, 66, 65'534, 65'537})
        EXPECT_FALSE(set.contains(NodeID{raw})) << raw;
}

TEST(NodeSet, CopiesDoNotFollowLaterChanges) {
    NodeSet set;
    for (std::int32_t raw = 0; raw < 200'000; raw += 3)
        set.insert(NodeID{raw});
    const NodeSet copy = set;
    set.remove(NodeID{99'999});
    set.insert(NodeID{100'000});
    EXPECT_TRUE(copy.contains(NodeID{99'999}));
    EXPECT_FALSE(copy.contains(NodeID{100'000}));
    EXPECT_FALSE(set.contains(NodeID{99'999}));
    EXPECT_TRUE(set.contains(NodeID{100'000}));
    EXPECT_EQ(copy.size(), set.size());
}

TEST(NodeSet, BehavesLikeASetOfNumbers) {
    test::forEachRound(20, [](test::Random& random) {
        NodeSet set;
        std::set<std::int32_t> model;
        const std::int64_t bound = random.oneIn(2) ? 200 : 300'000;
        for (int step = 0; step < 2'000; ++step) {
            const auto raw = static_cast<std::int32_t>(random.below(bound));
            if (random.oneIn(3))
                ASSERT_EQ(set.remove(NodeID{raw}), model.erase(raw) == 1);
            else
                ASSERT_EQ(set.insert(NodeID{raw}), model.insert(raw).second);
            ASSERT_EQ(set.size(), static_cast<std::int64_t>(model.size()));
            const auto asked = static_cast<std::int32_t>(random.below(bound));
            ASSERT_EQ(set.contains(NodeID{asked}), model.contains(asked));
        }
    });
}

} // namespace
} // namespace quelm
