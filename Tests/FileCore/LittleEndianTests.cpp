#include "FileCore/LittleEndian.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

namespace quelm {
namespace {

using namespace std::literals;

TEST(LittleEndian, TheLowestByteComesFirst) {
    std::string bytes = "x";
    littleEndian::put(bytes, std::uint32_t{0x0403'02FF});
    littleEndian::put(bytes, std::uint64_t{1} << 56);
    EXPECT_EQ(bytes, "x\xFF\x02\x03\x04\0\0\0\0\0\0\0\x01"s);
    EXPECT_EQ(littleEndian::at<std::uint32_t>(bytes, 1), 0x0403'02FFu);
    std::string_view rest = std::string_view(bytes).substr(5);
    EXPECT_EQ(littleEndian::take<std::uint64_t>(rest), std::uint64_t{1} << 56);
    EXPECT_TRUE(rest.empty());
}

TEST(LittleEndian, AllNumbersComeBack) {
    for (const std::uint64_t number : {std::uint64_t{0}, std::uint64_t{0x8081'8283'8485'8687},
                                       std::numeric_limits<std::uint64_t>::max()}) {
        std::string bytes;
        littleEndian::put(bytes, number);
        EXPECT_EQ(littleEndian::at<std::uint64_t>(bytes, 0), number);
    }
}

} // namespace
} // namespace quelm
