#include "JSONCore/KeyIndex.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

TEST(KeyIndex, CountsLikeAMap) {
    std::mt19937 random(11);
    std::vector<std::string> keys;
    for (int i = 0; i < 300; ++i)
        keys.push_back("clave " + std::to_string(i));
    KeyIndex index(4);
    std::map<std::string, std::int64_t> model;
    for (int step = 0; step < 30'000; ++step) {
        const std::string& key = keys[random() % keys.size()];
        if (random() % 2 == 0 || model[key] == 0) {
            index.add(key);
            ++model[key];
        } else {
            index.remove(key);
            --model[key];
        }
        ASSERT_EQ(index.count(key), model[key]);
    }
    for (const std::string& key : keys)
        EXPECT_EQ(index.count(key), model[key]) << key;
}

TEST(KeyIndex, CountsCanonicallyEquivalentKeysAsOne) {
    KeyIndex index(2);
    index.add("caf\u00E9");
    index.add("cafe\u0301");
    index.add("K");
    EXPECT_EQ(index.count("caf\u00E9"), 2);
    EXPECT_EQ(index.count("\u212A"), 1); // the Kelvin sign
    EXPECT_EQ(index.count("cafe"), 0);
}

TEST(KeyIndex, NumbersAKeyFromTwoAndFillsTheFirstGap) {
    KeyIndex index(4);
    EXPECT_EQ(index.uniqueKey("clave"), "clave");
    index.add("clave");
    EXPECT_EQ(index.uniqueKey("clave"), "clave 2");
    index.add("clave 3");
    EXPECT_EQ(index.uniqueKey("clave"), "clave 2");
    index.add("clave 2");
    EXPECT_EQ(index.uniqueKey("clave"), "clave 4");
}

TEST(KeyIndex, OffersANumberAgainOnceItsKeyIsGone) {
    KeyIndex index(4);
    const std::vector<std::string> keys{"clave", "clave 2", "clave 3", "clave 4"};
    for (const std::string& key : keys)
        index.add(key);
    EXPECT_EQ(index.uniqueKey("clave"), "clave 5");
    index.remove(keys[2]);
    EXPECT_EQ(index.uniqueKey("clave"), "clave 3");
    index.remove(keys[0]);
    EXPECT_EQ(index.uniqueKey("clave"), "clave");
}

TEST(KeyIndex, OffersANumberAgainAlsoForAnEquivalentStem) {
    KeyIndex index(4);
    index.add("\u212A");
    index.add("K 2");
    EXPECT_EQ(index.uniqueKey("\u212A"), "\u212A 3");
    index.remove("K 2");
    EXPECT_EQ(index.uniqueKey("\u212A"), "\u212A 2");
}

TEST(KeyIndex, GoesOnWhereItFoundTheLastFreeNumber) {
    KeyIndex index(4);
    std::vector<std::string> keys;
    keys.reserve(20'000);
    for (int i = 0; i < 20'000; ++i)
        index.add(keys.emplace_back(index.uniqueKey("clave")));
    EXPECT_EQ(keys.back(), "clave 20000");
}

TEST(KeyIndexDeathTest, RefusesToRemoveAKeyThatIsNotThere) {
    KeyIndex index(1);
    EXPECT_DEATH(index.remove("nada"), "removed from an index is in it");
}

} // namespace
} // namespace quelm
