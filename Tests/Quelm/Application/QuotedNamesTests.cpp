#include "Quelm/Application/QuotedNames.h"

#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

QString namesUpTo(int count) {
    QStringList names;
    for (int number = 1; number <= count; ++number)
        names.append(QString::number(number));
    return quotedNames(names);
}

TEST(QuotedNamesTests, AreJoinedAsInASentence) {
    EXPECT_EQ(quotedNames({QStringLiteral("a.json")}), QStringLiteral("\"a.json\""));
    EXPECT_EQ(namesUpTo(2), QStringLiteral("\"1\" y \"2\""));
    EXPECT_EQ(namesUpTo(3), QStringLiteral("\"1\", \"2\" y \"3\""));
}

TEST(QuotedNamesTests, OfManyOnlyTheFirstAreNamed) {
    EXPECT_EQ(namesUpTo(5), QStringLiteral("\"1\", \"2\", \"3\", \"4\" y \"5\""));
    EXPECT_EQ(namesUpTo(6), QStringLiteral("\"1\", \"2\", \"3\", \"4\" y 2 más"));
    EXPECT_EQ(namesUpTo(100), QStringLiteral("\"1\", \"2\", \"3\", \"4\" y 96 más"));
}

TEST(QuotedNamesTests, StayAsTheyAre) {
    EXPECT_EQ(quotedNames({QStringLiteral("%1 \"x\""), QStringLiteral("%2")}),
              QStringLiteral("\"%1 \"x\"\" y \"%2\""));
    EXPECT_DEATH(quotedNames({}), "there is a name");
}

} // namespace
} // namespace quelm
