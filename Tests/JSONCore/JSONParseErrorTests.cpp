#include "JSONCore/JSONParseError.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(JSONParseError, DescribesItselfInOneLine) {
    const JSONParseError error{"Se esperaba ',' o '}'", 40, 3, 14};
    EXPECT_EQ(error.errorDescription(), "Línea 3, columna 14: Se esperaba ',' o '}'");
}

TEST(JSONParseError, DescribesLargeNumbersWithoutSeparators) {
    const JSONParseError error{"Texto sin cerrar", 5'000'000'000, 1'234'567, 9'876'543'210};
    EXPECT_EQ(error.errorDescription(), "Línea 1234567, columna 9876543210: Texto sin cerrar");
}

TEST(JSONParseError, EqualsAnotherOnlyWithAllFourFields) {
    const JSONParseError error{"Valor inesperado", 10, 2, 3};
    EXPECT_EQ(error, (JSONParseError{"Valor inesperado", 10, 2, 3}));
    EXPECT_NE(error, (JSONParseError{"Se esperaba un valor", 10, 2, 3}));
    EXPECT_NE(error, (JSONParseError{"Valor inesperado", 11, 2, 3}));
    EXPECT_NE(error, (JSONParseError{"Valor inesperado", 10, 1, 3}));
    EXPECT_NE(error, (JSONParseError{"Valor inesperado", 10, 2, 4}));
}

TEST(JSONParseError, CancelledHasItsMessageAndZeros) {
    const JSONParseError error = JSONParseError::cancelled();
    EXPECT_EQ(error.message, "Validación cancelada");
    EXPECT_EQ(error.offset, 0);
    EXPECT_EQ(error.line, 0);
    EXPECT_EQ(error.column, 0);
}

TEST(JSONParseError, CancelledIsNotRecognisedByItsMessageAlone) {
    EXPECT_EQ(JSONParseError::cancelled(), JSONParseError::cancelled());
    EXPECT_NE(JSONParseError::cancelled(), (JSONParseError{"Validación cancelada", 1, 0, 0}));
    EXPECT_NE(JSONParseError::cancelled(), (JSONParseError{"Validación cancelada", 0, 1, 0}));
    EXPECT_NE(JSONParseError::cancelled(), (JSONParseError{"Validación cancelada", 0, 0, 1}));
    EXPECT_NE(JSONParseError::cancelled(), (JSONParseError{"Valor inesperado", 0, 0, 0}));
}

TEST(JSONParseError, OfForeignBytesStandsAtTheFirstCharacter) {
    EXPECT_EQ(JSONParseError::notUTF8(), (JSONParseError{"El archivo no está codificado en UTF-8", 0, 1, 1}));
    EXPECT_EQ(JSONParseError::tooLarge(), (JSONParseError{"El archivo es demasiado grande", 0, 1, 1}));
}

struct Place {
    std::string_view text;
    std::int64_t offset;
    std::int64_t line;
    std::int64_t column;
};

TEST(JSONParseError, CountsLinesAndColumnsFromOne) {
    const Place places[] = {
        {"", 0, 1, 1},
        {"abc", 0, 1, 1},
        {"abc", 2, 1, 3},
        {"abc", 3, 1, 4},
        // A line feed still stands on the line that it ends.
        {"ab\ncd", 2, 1, 3},
        {"ab\ncd", 3, 2, 1},
        {"ab\ncd", 5, 2, 3},
        {"\n\n\n", 3, 4, 1},
        // A carriage return starts no line.
        {"ab\rcd", 3, 1, 4},
        {"ab\r\ncd", 4, 2, 1},
        {"ab\r\ncd", 3, 1, 4},
        // Neither do the other line ends of Unicode.
        {"a\u2028b", 4, 1, 3},
        {"a\u0085b", 3, 1, 3},
        {"a\vb\fc", 4, 1, 5},
    };
    for (const Place& place : places) {
        SCOPED_TRACE(testing::PrintToString(place.text) + " at " + std::to_string(place.offset));
        EXPECT_EQ(JSONParseError::at(place.offset, "aquí", place.text),
                  (JSONParseError{"aquí", place.offset, place.line, place.column}));
    }
}

TEST(JSONParseError, CountsCharactersThatTheUserPerceives) {
    const Place places[] = {
        {"é|", 2, 1, 2},
        {"e\u0301|", 3, 1, 2},
        {"日本|", 6, 1, 3},
        {"😀|", 4, 1, 2},
        // A flag, a family and a hand with a skin tone are one character each.
        {"🇪🇸|", 8, 1, 2},
        {"👨‍👩‍👧|", 18, 1, 2},
        {"👍🏽|", 8, 1, 2},
        {"🇪🇸🇫🇷|", 16, 1, 3},
        // So is a byte-order mark.
        {"\uFEFF|", 3, 1, 2},
        {"\uFEFF{x", 4, 1, 3},
        // The line before does not count.
        {"ééé\né|", 9, 2, 2},
        // A carriage return and a line feed on one line do not meet: the line ends between them and what
        // follows.
        {"a\r\n|", 3, 2, 1},
    };
    for (const Place& place : places) {
        SCOPED_TRACE(testing::PrintToString(place.text) + " at " + std::to_string(place.offset));
        EXPECT_EQ(JSONParseError::at(place.offset, "aquí", place.text),
                  (JSONParseError{"aquí", place.offset, place.line, place.column}));
    }
}

TEST(JSONParseError, CountsAPartOfACharacterAsOne) {
    EXPECT_EQ(JSONParseError::at(1, "aquí", "é").column, 2);
    EXPECT_EQ(JSONParseError::at(4, "aquí", "a😀").column, 3);
}

TEST(JSONParseError, FindsItsPlaceFarIntoALongText) {
    std::string text;
    for (int i = 0; i < 50'000; ++i)
        text += "línea\n";
    text += std::string(70'000, 'x') + "é";
    const auto end = static_cast<std::int64_t>(text.size());
    EXPECT_EQ(JSONParseError::at(end, "aquí", text), (JSONParseError{"aquí", end, 50'001, 70'002}));
}

} // namespace
} // namespace quelm
