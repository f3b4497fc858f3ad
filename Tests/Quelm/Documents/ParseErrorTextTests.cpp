#include "Quelm/Documents/ParseErrorText.h"
#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(ParseErrorTextTests, ItNamesLineColumnAndMessage) {
    const JSONParseError error{.message = "Se esperaba ',' o '}'", .offset = 40, .line = 3, .column = 14};
    EXPECT_EQ(parseErrorText(error), QStringLiteral("Línea 3, columna 14: Se esperaba ',' o '}'"));
    EXPECT_EQ(parseErrorText(error).toStdString(), error.errorDescription());
}

TEST(ParseErrorTextTests, APercentSignInTheMessageStaysOne) {
    const JSONParseError error{.message = "%1 %2", .offset = 0, .line = 1, .column = 2};
    EXPECT_EQ(parseErrorText(error), QStringLiteral("Línea 1, columna 2: %1 %2"));
}

} // namespace
} // namespace quelm
