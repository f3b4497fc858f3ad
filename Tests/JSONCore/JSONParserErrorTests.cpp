#include "JSONCore/JSONParser.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::parseError;

struct Rejected {
    std::string_view text;
    std::int64_t offset;
    std::int64_t line;
    std::int64_t column;
};

/// Every text fails with that message, at its place.
void expectRejected(std::string_view message, std::initializer_list<Rejected> cases) {
    for (const auto& [text, offset, line, column] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(parseError(text), (JSONParseError{std::string(message), offset, line, column}));
    }
}

TEST(JSONParserErrors, AMissingValueIsReportedAtTheEnd) {
    expectRejected("Se esperaba un valor", {
                                               {"", 0, 1, 1},
                                               {"   ", 3, 1, 4},
                                               {" \n\t", 3, 2, 2},
                                               {"\r\n\r\n", 4, 3, 1},
                                               {"\uFEFF", 3, 1, 2},
                                               {"[", 1, 1, 2},
                                               {"[ \n", 3, 2, 1},
                                               {"[1,", 3, 1, 4},
                                               {"[[1], ", 6, 1, 7},
                                               {"{\"a\":", 5, 1, 6},
                                               {"{\"a\":  ", 7, 1, 8},
                                           });
}

TEST(JSONParserErrors, AByteThatBeginsNoValueIsReportedWhereItStands) {
    expectRejected("Valor inesperado", {
                                           {"[1,]", 3, 1, 4},
                                           {"[,1]", 1, 1, 2},
                                           {"}", 0, 1, 1},
                                           {"]", 0, 1, 1},
                                           {"[}", 1, 1, 2},
                                           {",", 0, 1, 1},
                                           {":", 0, 1, 1},
                                           {"x", 0, 1, 1},
                                           {"+1", 0, 1, 1},
                                           {".5", 0, 1, 1},
                                           {"'a'", 0, 1, 1},
                                           {"True", 0, 1, 1},
                                           {"NaN", 0, 1, 1},
                                           {"Infinity", 0, 1, 1},
                                           {"// a", 0, 1, 1},
                                           {"é", 0, 1, 1},
                                           {"{\"a\":}", 5, 1, 6},
                                           {"{\"a\":,}", 5, 1, 6},
                                           {"[\"é\", x]", 7, 1, 7},
                                           {"[\n 1,\n  x\n]", 8, 3, 3},
                                           {"[1,\r\nx]", 5, 2, 1},
                                           {"[1,\rx]", 4, 1, 5},
                                           {"\uFEFFx", 3, 1, 2},
                                           {"\uFEFF[1,\nx", 7, 2, 1},
                                           // A second mark is no white space.
                                           {"\uFEFF\uFEFF1", 3, 1, 2},
                                           {" \uFEFF1", 1, 1, 2},
                                       });
}

TEST(JSONParserErrors, ALiteralThatDoesNotMatchIsReportedAtItsStart) {
    expectRejected("Valor inesperado", {
                                           {"t", 0, 1, 1},
                                           {"tr", 0, 1, 1},
                                           {"tru", 0, 1, 1},
                                           {"trua", 0, 1, 1},
                                           {"f", 0, 1, 1},
                                           {"fals", 0, 1, 1},
                                           {"falsa", 0, 1, 1},
                                           {"n", 0, 1, 1},
                                           {"nul", 0, 1, 1},
                                           {"nulo", 0, 1, 1},
                                           {"[tRUE]", 1, 1, 2},
                                           {"[true,fa]", 6, 1, 7},
                                           {"[ nul]", 2, 1, 3},
                                           {"[tru\n]", 1, 1, 2},
                                       });
}

TEST(JSONParserErrors, ABrokenNumberIsReportedAtItsStart) {
    expectRejected("Número inválido",
                   {
                       {"-", 0, 1, 1},      {"1.", 0, 1, 1},           {"1e", 0, 1, 1},        {"1e+", 0, 1, 1},
                       {"1e-", 0, 1, 1},    {"1E", 0, 1, 1},           {"-x", 0, 1, 1},        {"--1", 0, 1, 1},
                       {"-.5", 0, 1, 1},    {"1.e5", 0, 1, 1},         {"1.x", 0, 1, 1},       {"1.5e", 0, 1, 1},
                       {"1ex", 0, 1, 1},    {"0e++1", 0, 1, 1},        {"-Infinity", 0, 1, 1}, {"0.", 0, 1, 1},
                       {"[1, -]", 4, 1, 5}, {"[12.]", 1, 1, 2},        {"[0.5e]", 1, 1, 2},    {"{\"a\":-}", 5, 1, 6},
                       {"-\n1", 0, 1, 1},   {"[1,\n12345.]", 4, 2, 1},
                   });
}

TEST(JSONParserErrors, WhatFollowsALiteralOrANumberIsTheEnclosingRulesAffair) {
    expectRejected("Contenido inesperado después del valor raíz", {
                                                                      {"truex", 4, 1, 5},
                                                                      {"nullnull", 4, 1, 5},
                                                                      {"falsey", 5, 1, 6},
                                                                      {"01", 1, 1, 2},
                                                                      {"-01", 2, 1, 3},
                                                                      {"00", 1, 1, 2},
                                                                      {"0x1F", 1, 1, 2},
                                                                      {"1 2", 2, 1, 3},
                                                                      {"1a", 1, 1, 2},
                                                                      {"1-2", 1, 1, 2},
                                                                      {"1.5.6", 3, 1, 4},
                                                                      {"1e5e6", 3, 1, 4},
                                                                      {"1e5.6", 3, 1, 4},
                                                                  });
    expectRejected("Se esperaba ',' o ']'", {{"[truex]", 5, 1, 6}, {"[01]", 2, 1, 3}, {"[1.5.6]", 4, 1, 5}});
    expectRejected("Se esperaba ',' o '}'", {{"{\"a\":nullx}", 9, 1, 10}, {"{\"a\":00}", 6, 1, 7}});
}

TEST(JSONParserErrors, ContentAfterTheTopLevelValueIsReportedWhereItStarts) {
    expectRejected("Contenido inesperado después del valor raíz", {
                                                                      {"{} x", 3, 1, 4},
                                                                      {"[]]", 2, 1, 3},
                                                                      {"{}}", 2, 1, 3},
                                                                      {"1,", 1, 1, 2},
                                                                      {"\"a\" \"b\"", 4, 1, 5},
                                                                      {"{}\n\n  {}", 6, 3, 3},
                                                                      {"\uFEFF{}x", 5, 1, 4},
                                                                      {"{}\uFEFF", 2, 1, 3},
                                                                  });
    EXPECT_EQ(parseError(std::string_view("{}\0", 3)),
              (JSONParseError{"Contenido inesperado después del valor raíz", 2, 1, 3}));
}

TEST(JSONParserErrors, AMissingKeyIsReportedAtTheByteInItsPlaceOrTheEnd) {
    expectRejected("Se esperaba una clave entre comillas", {
                                                               {"{\"a\":1,}", 7, 1, 8},
                                                               {"{\"a\":1, }", 8, 1, 9},
                                                               {"{\"a\":1,", 7, 1, 8},
                                                               {"{\"a\":1, \n", 9, 2, 1},
                                                               {"{", 1, 1, 2},
                                                               {"{  ", 3, 1, 4},
                                                               {"{,}", 1, 1, 2},
                                                               {"{]", 1, 1, 2},
                                                               {"{a:1}", 1, 1, 2},
                                                               {"{'a':1}", 1, 1, 2},
                                                               {"{1:2}", 1, 1, 2},
                                                               {"{\"a\":1,,\"b\":2}", 7, 1, 8},
                                                               {"{\n\"a\":1,\n}", 9, 3, 1},
                                                           });
}

TEST(JSONParserErrors, AMissingColonIsReportedAtTheByteInItsPlaceOrTheEnd) {
    expectRejected("Se esperaba ':' después de la clave", {
                                                              {"{\"a\" 1}", 5, 1, 6},
                                                              {"{\"a\"}", 4, 1, 5},
                                                              {"{\"a\"", 4, 1, 5},
                                                              {"{\"a\"  ", 6, 1, 7},
                                                              {"{\"a\",\"b\":1}", 4, 1, 5},
                                                              {"{\"a\"\"b\"}", 4, 1, 5},
                                                              {"{\"a\"\n=1}", 5, 2, 1},
                                                              {"{\"é\" 1}", 6, 1, 6},
                                                          });
}

TEST(JSONParserErrors, AMissingCommaOrBracketIsReportedAtTheByteInItsPlace) {
    expectRejected("Se esperaba ',' o '}'", {
                                                {"{\"a\":1 2}", 7, 1, 8},
                                                {"{\"a\":1]", 6, 1, 7},
                                                {"{\"a\":1:2}", 6, 1, 7},
                                                {"{\"a\":1 \"b\":2}", 7, 1, 8},
                                                {"{\"a\":{}\n\"b\":2}", 8, 2, 1},
                                                {"{\"a\":[1]]", 8, 1, 9},
                                            });
    expectRejected("Se esperaba ',' o ']'", {
                                                {"[1 2]", 3, 1, 4},
                                                {"[1}", 2, 1, 3},
                                                {"[1:2]", 2, 1, 3},
                                                {"[1;2]", 2, 1, 3},
                                                {"[\"a\" \"b\"]", 5, 1, 6},
                                                {"[[]\n{}]", 4, 2, 1},
                                                {"[{\"a\":1}}", 8, 1, 9},
                                            });
}

TEST(JSONParserErrors, AnOpenContainerIsReportedAtTheEnd) {
    expectRejected("Falta '}' para cerrar el objeto", {
                                                          {"{\"a\":1", 6, 1, 7},
                                                          {"{\"a\":1 \n ", 9, 2, 2},
                                                          {"{\"a\":{}", 7, 1, 8},
                                                          {"[{\"a\":[]", 8, 1, 9},
                                                      });
    expectRejected("Falta ']' para cerrar el arreglo", {
                                                           {"[1", 2, 1, 3},
                                                           {"[1\n", 3, 2, 1},
                                                           {"[1\r\n", 4, 2, 1},
                                                           {"[[]", 3, 1, 4},
                                                           {"[[1]", 4, 1, 5},
                                                           {"{\"a\":[true", 10, 1, 11},
                                                       });
}

TEST(JSONParserErrors, CountsLinesAfterManyOthers) {
    const std::string text = "[\n" + test::repeated("  \"ñandú\",\n", 10'000) + "  \"ñandú\" x";
    const auto offset = static_cast<std::int64_t>(text.size()) - 1;
    EXPECT_EQ(parseError(text), (JSONParseError{"Se esperaba ',' o ']'", offset, 10'002, 11}));
}

} // namespace
} // namespace quelm
