#include "FileCore/ContentChecksum.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <utility>

namespace quelm {
namespace {

TEST(ContentChecksum, OfKnownBytesIsThatOfXXH3) {
    // From the tables of the algorithm: its hash of no bytes.
    const ContentChecksum none = ContentChecksum::of("");
    EXPECT_EQ(none.size, 0);
    EXPECT_EQ(none.high, 0x99aa06d3014798d8U);
    EXPECT_EQ(none.low, 0x6001c324468d497fU);
}

TEST(ContentChecksum, PiecesMakeTheSameAsTheWhole) {
    std::mt19937 random(3);
    std::string bytes(100'000, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    ContentHasher hasher;
    std::size_t position = 0;
    while (position < bytes.size()) {
        const std::size_t length = std::min<std::size_t>(random() % 5000, bytes.size() - position);
        hasher.update(std::string_view(bytes).substr(position, length));
        position += length;
        ASSERT_EQ(hasher.checksum(), ContentChecksum::of(std::string_view(bytes).substr(0, position)));
    }
}

TEST(ContentChecksum, NoBytesInPiecesAreNoBytes) {
    ContentHasher hasher;
    hasher.update({});
    EXPECT_EQ(hasher.checksum(), ContentChecksum::of(""));
}

TEST(ContentChecksum, AHasherThatIsMovedGoesOn) {
    ContentHasher first;
    first.update("one ");
    ContentHasher second(std::move(first));
    second.update("two");
    EXPECT_EQ(second.checksum(), ContentChecksum::of("one two"));
}

TEST(ContentChecksum, EveryBitCounts) {
    std::string bytes(300, 'a');
    std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
    for (std::size_t i = 0; i < bytes.size() * 8; ++i) {
        std::string flipped = bytes;
        flipped[i / 8] = static_cast<char>(flipped[i / 8] ^ (1 << (i % 8)));
        const ContentChecksum checksum = ContentChecksum::of(flipped);
        EXPECT_NE(checksum, ContentChecksum::of(bytes));
        EXPECT_TRUE(seen.emplace(checksum.high, checksum.low).second);
    }
}

} // namespace
} // namespace quelm
