#include "Quelm/Documents/Revision.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(RevisionTests, ARevisionIsFollowedByOneMore) {
    EXPECT_EQ(nextRevision(0), 1);
    EXPECT_EQ(nextRevision(std::numeric_limits<std::int64_t>::max() - 1), std::numeric_limits<std::int64_t>::max());
}

TEST(RevisionDeathTests, CountingBeyondTheLastRevisionStopsTheProcess) {
    EXPECT_DEATH(nextRevision(std::numeric_limits<std::int64_t>::max()), "a revision can still be counted");
}

} // namespace
} // namespace quelm
