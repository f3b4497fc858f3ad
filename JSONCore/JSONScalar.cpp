#include "JSONCore/JSONScalar.h"

#include "JSONCore/NumberGrammar.h"
#include "TextCore/WhiteSpace.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <locale.h>

namespace quelm::JSONScalar {

namespace {

constexpr bool isASCIIWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Whether a text is "true" in any case. No other character has one of these letters as its lower case.
bool isTrueInAnyCase(std::string_view text) {
    return std::ranges::equal(text, std::string_view("true"),
                              [](char c, char lower) { return (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c) == lower; });
}

/// The number that a whole text is by `strtod` in the C locale; not one that starts with white space or NUL. NaN when
/// it is none.
struct LenientNumber {
    bool isNumber;
    double value;
};

LenientNumber lenientNumber(const std::string& text) {
    static const locale_t cLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    if (text.empty() || text.front() == '\0' || isASCIIWhiteSpace(text.front()))
        return {false, 0};
    char* end = nullptr;
    const double value = ::strtod_l(text.c_str(), &end, cLocale);
    return {end == text.c_str() + text.size(), value};
}

std::string numberFrom(std::string_view trimmed, std::string_view text, NodeKind from) {
    if (isValid(trimmed, NodeKind::number))
        return std::string(trimmed);
    return from == NodeKind::bool_ && text == "true" ? "1" : "0";
}

std::string boolFrom(std::string_view trimmed, NodeKind from) {
    if (isTrueInAnyCase(trimmed))
        return "true";
    if (from != NodeKind::number)
        return "false";
    const LenientNumber number = lenientNumber(std::string(trimmed));
    return number.isNumber && number.value != 0 ? "true" : "false";
}

} // namespace

bool isValid(std::string_view text, NodeKind kind) {
    switch (kind) {
    case NodeKind::object:
    case NodeKind::array:
        return false;
    case NodeKind::string:
        return true;
    case NodeKind::number:
        return scanNumber(text) == text.size();
    case NodeKind::bool_:
        return text == "true" || text == "false";
    case NodeKind::null:
        return text.empty();
    }
    return false;
}

std::string_view defaultScalar(NodeKind kind) {
    switch (kind) {
    case NodeKind::number:
        return "0";
    case NodeKind::bool_:
        return "false";
    default:
        return "";
    }
}

std::string convert(std::string_view text, NodeKind from, NodeKind to) {
    switch (to) {
    case NodeKind::number:
        return numberFrom(trimmedWhiteSpace(text), text, from);
    case NodeKind::bool_:
        return boolFrom(trimmedWhiteSpace(text), from);
    case NodeKind::string:
        return isContainer(from) || from == NodeKind::null ? std::string() : std::string(text);
    default:
        return {};
    }
}

std::size_t scanNumber(std::string_view text, std::size_t position) {
    const char* end = text.data() + text.size();
    const auto at = [end](const char* place) { return place < end ? *place : '\0'; };
    const auto skipDigits = [end](const char* place) {
        return std::find_if_not(place, end, [](char c) { return c >= '0' && c <= '9'; });
    };
    const char* after = scanNumberLiteral(text.data() + position, at, skipDigits);
    return after ? static_cast<std::size_t>(after - text.data()) : std::string_view::npos;
}

} // namespace quelm::JSONScalar
