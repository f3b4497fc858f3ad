#include "Tests/JSONCore/Support/RandomJSON.h"

#include "TextCore/UTF8.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace quelm::test {

namespace {

constexpr std::array<std::string_view, 24> keyStock{
    "a",
    "b",
    "A",
    "id",
    "name",
    "clave",
    "clave 2",
    "pegado",
    "a copia",
    "",
    " ",
    "\u00E9",
    "e\u0301",
    "\u212B",
    "\u00C5",
    "A\u030A",
    "x\"y",
    "x\\y",
    "x\ny",
    "日本",
    "\U0001F600",
    "\uAC01",
    "\u1100\u1161\u11A8",
    "una clave bastante más larga que las otras",
};

constexpr std::array<std::string_view, 14> textPieces{
    "a",
    "texto ",
    "\n",
    "\"",
    "\\",
    "\u00E9",
    "e\u0301",
    "\u2028",
    "\U0001F468\u200D\U0001F469",
    "\x01",
    "/",
    "\x7F",
    "0123456789abcdef",
    "ñ",
};

/// A string literal of the text, each character written in one of the ways there are.
std::string literal(std::string_view text, bool isUntidy, Random& random) {
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool mustEscape = byte < 0x20 || character == '"' || character == '\\';
        const bool mayEscape = isUntidy && byte < 0x80 && random.oneIn(12);
        if (!mustEscape && !mayEscape) {
            result += character;
        } else if (const auto which = std::string_view("\"\\/\b\f\n\r\t").find(character);
                   which != std::string_view::npos && !random.oneIn(4)) {
            result += '\\';
            result += "\"\\/bfnrt"[which];
        } else {
            result += "\\u00";
            result += (random.oneIn(2) ? "0123456789abcdef" : "0123456789ABCDEF")[byte / 16];
            result += (random.oneIn(2) ? "0123456789abcdef" : "0123456789ABCDEF")[byte % 16];
        }
    }
    if (isUntidy && random.oneIn(20))
        result += random.oneOf(std::array<std::string_view, 4>{"\\uD83D\\uDE00", "\\u00e9", "\\u0000", "\\uffff"});
    return result + "\"";
}

class RandomWriter {
public:
    RandomWriter(Random& random, const JSONShape& shape) : random_(random), shape_(shape) {}

    std::string write() {
        white();
        if (shape_.values > 1)
            container(shape_.values - 1, shape_.largestContainer);
        else
            value(1);
        white();
        return std::move(text_);
    }

private:
    void white() {
        if (!shape_.isUntidy || !random_.oneIn(4))
            return;
        for (std::int64_t i = random_.oneIn(10) ? random_.below(80) : random_.below(4); i > 0; --i)
            text_ += random_.oneOf(std::string_view(" \t\n\r"));
    }

    /// A value with about so many values in it, itself included.
    void value(std::int64_t values) {
        if (values > 1 && !random_.oneIn(6))
            container(values - 1, 1 + random_.below(std::min(values, shape_.largestContainer)));
        else if (random_.oneIn(8))
            container(0, 0);
        else
            scalar();
    }

    /// A container of at most `count` members or elements that share `values` among them.
    void container(std::int64_t values, std::int64_t count) {
        const bool isObject = random_.oneIn(2);
        text_ += isObject ? '{' : '[';
        white();
        for (std::int64_t i = 0; i < count && values > 0; ++i) {
            if (i > 0)
                text_ += ',';
            white();
            if (isObject) {
                text_ += literal(randomKey(random_), shape_.isUntidy, random_);
                white();
                text_ += ':';
                white();
            }
            const std::int64_t fair = values / (count - i);
            const std::int64_t share = std::min(values, random_.oneIn(3) ? 1 : 1 + random_.below(2 * fair + 1));
            values -= share;
            value(share);
            white();
        }
        text_ += isObject ? '}' : ']';
    }

    void scalar() {
        switch (random_.below(6)) {
        case 0:
            text_ += "true";
            break;
        case 1:
            text_ += "false";
            break;
        case 2:
            text_ += "null";
            break;
        case 3:
            text_ += literal(randomText(random_), shape_.isUntidy, random_);
            break;
        case 4:
            text_ += literal(random_.oneIn(2) ? "" : "valor", shape_.isUntidy, random_);
            break;
        default:
            text_ += randomNumber(random_);
        }
    }

    Random& random_;
    JSONShape shape_;
    std::string text_;
};

/// The characters of a text.
std::vector<std::string> charactersOf(const std::string& text) {
    std::vector<std::string> characters;
    for (const char byte : text) {
        if ((static_cast<unsigned char>(byte) & 0xC0) == 0x80)
            characters.back() += byte;
        else
            characters.emplace_back(1, byte);
    }
    return characters;
}

std::string randomCharacter(Random& random) {
    if (random.oneIn(8)) {
        static constexpr std::array<std::string_view, 8> odd{"é",      "😀",      "\u00A0", "\uFEFF",
                                                             "\u2028", "e\u0301", "\x7F",   "true"};
        return std::string(random.oneOf(odd));
    }
    if (random.oneIn(12))
        return std::string(1, static_cast<char>(random.below(0x20)));
    return std::string(1, random.oneOf(std::string_view("{}[]:,\"\\ \n0123456789-+.eEtrufalsn/bx'")));
}

} // namespace

std::string randomJSON(Random& random, const JSONShape& shape) {
    return RandomWriter(random, shape).write();
}

std::string randomKey(Random& random) {
    std::string key(random.oneOf(keyStock));
    if (random.oneIn(3))
        key += " " + std::to_string(random.below(20));
    return key;
}

std::string randomText(Random& random) {
    std::string text;
    for (std::int64_t i = random.oneIn(8) ? random.below(120) : random.below(8); i > 0; --i)
        text += random.oneOf(textPieces);
    return text;
}

std::string randomNumber(Random& random) {
    const auto digits = [&] {
        std::string result;
        for (std::int64_t i = random.oneIn(10) ? 1 + random.below(60) : 1 + random.below(4); i > 0; --i)
            result += static_cast<char>('0' + random.below(10));
        return result;
    };
    std::string number = random.oneIn(3) ? "-" : "";
    const std::string whole = digits();
    number += whole.front() == '0' ? "0" : whole;
    if (random.oneIn(3))
        number += "." + digits();
    if (random.oneIn(4))
        number += random.oneOf(std::string_view("eE")) +
                  std::string(random.oneOf(std::array<std::string_view, 3>{"", "+", "-"})) + digits();
    return number;
}

std::string mutated(const std::string& text, Random& random) {
    std::vector<std::string> characters = charactersOf(text);
    const auto somewhere = [&] {
        return characters.begin() + random.below(static_cast<std::int64_t>(characters.size()) + 1);
    };
    for (std::int64_t i = 1 + random.below(3); i > 0; --i) {
        const auto at = somewhere();
        switch (random.below(5)) {
        case 0:
            characters.insert(at, randomCharacter(random));
            break;
        case 1:
            if (at != characters.end())
                characters.erase(at);
            break;
        case 2:
            if (at != characters.end())
                *at = randomCharacter(random);
            break;
        case 3:
            if (at != characters.end())
                std::swap(
                    *at,
                    characters[static_cast<std::size_t>(random.below(static_cast<std::int64_t>(characters.size())))]);
            break;
        default:
            if (random.oneIn(3))
                characters.erase(at, characters.end());
        }
    }
    std::string result;
    for (const std::string& character : characters)
        result += character;
    return utf8::repaired(result).value_or(result);
}

} // namespace quelm::test
