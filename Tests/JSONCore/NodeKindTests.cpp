#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <unordered_set>

namespace quelm {
namespace {

TEST(NodeKind, HasSixKindsNumberedFromZeroInOrder) {
    EXPECT_THAT(allNodeKinds, testing::ElementsAre(NodeKind::object, NodeKind::array, NodeKind::string,
                                                   NodeKind::number, NodeKind::bool_, NodeKind::null));
    for (std::uint8_t raw = 0; raw < 6; ++raw)
        EXPECT_EQ(static_cast<std::uint8_t>(allNodeKinds[raw]), raw);
}

TEST(NodeKind, IsMadeFromRawValuesUpToFive) {
    for (std::uint8_t raw = 0; raw < 6; ++raw)
        EXPECT_EQ(nodeKindFromRawValue(raw), allNodeKinds[raw]);
    EXPECT_EQ(nodeKindFromRawValue(6), std::nullopt);
    EXPECT_EQ(nodeKindFromRawValue(255), std::nullopt);
}

TEST(NodeKind, OnlyObjectsAndArraysAreContainers) {
    EXPECT_TRUE(isContainer(NodeKind::object));
    EXPECT_TRUE(isContainer(NodeKind::array));
    EXPECT_FALSE(isContainer(NodeKind::string));
    EXPECT_FALSE(isContainer(NodeKind::number));
    EXPECT_FALSE(isContainer(NodeKind::bool_));
    EXPECT_FALSE(isContainer(NodeKind::null));
}

TEST(NodeID, ComparesAndHashesByItsNumberAlone) {
    EXPECT_EQ(NodeID{7}, NodeID{7});
    EXPECT_NE(NodeID{7}, NodeID{8});
    EXPECT_LT(NodeID{7}, NodeID{8});
    EXPECT_EQ(std::hash<NodeID>{}(NodeID{7}), std::hash<NodeID>{}(NodeID{7}));
    const std::unordered_set<NodeID> ids{NodeID{1}, NodeID{2}, NodeID{1}};
    EXPECT_EQ(ids.size(), 2U);
}

} // namespace
} // namespace quelm
