#include "FileCore/AvailableMemory.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(AvailableMemory, IsFoundOnThisMachine) {
    const auto memory = availableMemory();
    ASSERT_TRUE(memory);
    EXPECT_GT(*memory, std::int64_t{1} << 20);
}

TEST(AvailableMemory, IsReadFromItsLine) {
    EXPECT_EQ(availableMemoryIn("MemTotal:       24682032 kB\nMemFree:  7 kB\nMemAvailable:   23228 kB\nBuffers: 3 kB\n"),
              std::int64_t{23'228} * 1024);
    EXPECT_EQ(availableMemoryIn("MemTotal: 1 kB\nMemAvailable: 0 kB\n"), 0);
}

TEST(AvailableMemory, IsUnknownWhereTheLineIsMissingOrMeansSomethingElse) {
    for (const char* text : {"", "\nMemAvailable:", "\nMemAvailable:  ", "\nMemAvailable: x kB\n", "\nMemAvailable: 12",
                             "\nMemAvailable: 12 MB\n", "\nMemAvailable: -1 kB\n",
                             "\nMemAvailable: 9223372036854775807 kB\n", "MemFree: 12 kB\n"})
        EXPECT_EQ(availableMemoryIn(text), std::nullopt) << text;
}

} // namespace
} // namespace quelm
