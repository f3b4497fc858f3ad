#include "JSONCore/PathNotation.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

TEST(PathNotationTests, OneCharacterThatDoesNotFitIsFoundAnywhereInAKey) {
    for (const std::size_t length : {1, 2, 63, 64, 65, 128, 1000}) {
        const std::string key(length, 'k');
        EXPECT_TRUE(PathNotation::isIdentifierLike(key)) << length;
        for (std::size_t place = 0; place < length; ++place)
            for (const char unfit : {' ', '-', '@', '[', '`', '{', '/', ':', '\xC3', '\0'}) {
                std::string other = key;
                other[place] = unfit;
                ASSERT_FALSE(PathNotation::isIdentifierLike(other)) << length << " " << place;
            }
    }
}

TEST(PathNotationTests, DigitsFitAnywhereButInFront) {
    EXPECT_TRUE(PathNotation::isIdentifierLike("_9$aZ"));
    EXPECT_FALSE(PathNotation::isIdentifierLike("9a"));
    EXPECT_FALSE(PathNotation::isIdentifierLike(""));
}

TEST(PathNotationTests, OtherKeysAreQuoted) {
    EXPECT_EQ(PathNotation::member("clave"), ".clave");
    EXPECT_EQ(PathNotation::member(""), R"([""])");
    EXPECT_EQ(PathNotation::member(R"(a"b\c)"), R"(["a\"b\\c"])");
    EXPECT_EQ(PathNotation::member("año"), R"(["año"])");
}

} // namespace
} // namespace quelm
