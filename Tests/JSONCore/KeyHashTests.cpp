#include "JSONCore/KeyHash.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <unordered_set>

namespace quelm {
namespace {

TEST(KeyHash, IsTheSameForCanonicallyEquivalentKeys) {
    EXPECT_EQ(keyHash("caf\u00E9"), keyHash("cafe\u0301"));
    EXPECT_EQ(keyHash("\u212A"), keyHash("K")); // the Kelvin sign
    EXPECT_EQ(keyHash("una clave m\u00E1s larga"), keyHash("una clave ma\u0301s larga"));
    EXPECT_NE(keyHash("cafe"), keyHash("caf\u00E9"));
}

TEST(KeyHash, DoesNotDependOnWhereTheKeyStands) {
    const std::string key = "una clave de treinta bytes o m\u00E1s";
    for (std::size_t length = 0; length <= 29; ++length) {
        for (std::size_t shift = 0; shift < 9; ++shift) {
            const std::string moved = std::string(shift, 'x') + key;
            EXPECT_EQ(keyHash(std::string_view(moved).substr(shift, length)),
                      keyHash(std::string_view(key).substr(0, length)))
                << length << " at " << shift;
        }
    }
}

TEST(KeyHash, TellsKeysApartThatDifferInAnyByteOrInLengthAlone) {
    std::unordered_set<std::uint64_t> hashes;
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string zeros(length, '\0');
        EXPECT_TRUE(hashes.insert(keyHash(zeros)).second) << length;
        for (std::size_t at = 0; at < length; ++at) {
            std::string changed = zeros;
            changed[at] = 1;
            EXPECT_TRUE(hashes.insert(keyHash(changed)).second) << length << " at " << at;
        }
    }
}

TEST(KeyHash, SpreadsKeysThatAreAlikeOverLowAndHighBits) {
    constexpr std::size_t keys = 100'000;
    std::unordered_set<std::uint64_t> low;
    std::unordered_set<std::uint64_t> high;
    for (std::size_t number = 0; number < keys; ++number) {
        const std::uint64_t hash = keyHash("member " + std::to_string(number));
        low.insert(hash & 0xFFFF'FFFF);
        high.insert(hash >> 32);
    }
    // Of so many random numbers of 32 bits one or two are twice there.
    EXPECT_GE(low.size(), keys - 10);
    EXPECT_GE(high.size(), keys - 10);
}

} // namespace
} // namespace quelm
