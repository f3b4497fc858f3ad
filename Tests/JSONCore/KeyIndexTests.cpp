#include "JSONCore/KeyIndex.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <string_view>
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
    index.checkInvariants();
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

TEST(KeyIndex, StaysWholeWhileKeysComeAndGo) {
    KeyIndex index(1);
    std::vector<std::string> keys;
    keys.reserve(5'000);
    for (int i = 0; i < 5'000; ++i) {
        index.add(keys.emplace_back("clave " + std::to_string(i)));
        // Nearly all are gone again by the time the table is made anew.
        if (i % 100 != 0)
            index.remove(keys.back());
        if (i % 500 == 0)
            index.checkInvariants();
    }
    for (int i = 0; i < 5'000; ++i)
        ASSERT_EQ(index.count(keys[static_cast<std::size_t>(i)]), i % 100 == 0) << i;
    for (int i = 0; i < 5'000; i += 100)
        index.remove(keys[static_cast<std::size_t>(i)]);
    for (const std::string& key : keys)
        index.add(key);
    index.checkInvariants();
    EXPECT_EQ(index.count(keys[7]), 1);
}

TEST(KeyIndex, TakesManyKeysAsItTakesOne) {
    std::vector<std::string> texts;
    for (int i = 0; i < 10'000; ++i)
        texts.push_back(i % 3 == 0 ? "caf\u00E9 " + std::to_string(i % 700) : "k" + std::to_string(i % 900));
    const std::vector<std::string_view> keys(texts.begin(), texts.end());
    KeyIndex together(10);
    together.add(keys);
    KeyIndex apart(keys.size());
    for (const std::string_view key : keys)
        apart.add(key);
    together.checkInvariants();
    apart.checkInvariants();
    EXPECT_TRUE(together.hasSameCounts(apart));
    apart.remove(keys[5]);
    EXPECT_FALSE(together.hasSameCounts(apart));
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

TEST(KeyIndex, CountsLongKeysLikeAMap) {
    std::mt19937 random(12);
    // Views of the same keys in two places, and one that begins where another does.
    std::vector<std::string> texts;
    for (int i = 0; i < 20; ++i) {
        std::string text;
        while (text.size() < 5'000)
            text += "clave \u043B\u0439 ";
        texts.push_back(text + std::to_string(i % 10));
    }
    std::vector<std::string_view> keys(texts.begin(), texts.end());
    keys.push_back(keys.front().substr(0, 4'999));

    KeyIndex index(4);
    std::map<std::string_view, std::int64_t> model;
    for (int step = 0; step < 5'000; ++step) {
        const std::string_view key = keys[random() % keys.size()];
        if (random() % 2 == 0 || model[key] == 0) {
            index.add(key);
            ++model[key];
        } else {
            index.remove(key);
            --model[key];
        }
        ASSERT_EQ(index.count(key), model[key]);
        ASSERT_EQ(index.count(std::string(key)), model[key]);
    }
    index.checkInvariants();
}

} // namespace
} // namespace quelm
