#include "Benchmarks/Generator/Digits.h"
#include "Benchmarks/Generator/Items.h"
#include "Benchmarks/Generator/Vocabulary.h"

#include <array>
#include <string>

namespace quelm::bench::items {

namespace {

using vocabulary::Script;

constexpr std::array shortEscapes =
    std::to_array<std::string_view>({R"(\")", R"(\\)", R"(\/)", R"(\b)", R"(\f)", R"(\n)", R"(\r)", R"(\t)"});

void appendHexadecimal(std::string& text, std::uint32_t unit, std::string_view digits) {
    text += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        text += digits[unit >> shift & 15];
}

/// A code unit, or a pair of surrogates, in digits of either case as programs differ in that.
void appendUnicodeEscape(std::string& text, Random& random) {
    const std::string_view digits = random.chance(50) ? "0123456789abcdef" : "0123456789ABCDEF";
    switch (random.below(5)) {
    case 0:
        return appendHexadecimal(text, random.below(0x20), digits);
    case 1:
        return appendHexadecimal(text, random.between(0xA0, 0x17F), digits);
    case 2:
        return appendHexadecimal(text, random.between(0x400, 0x45F), digits);
    case 3:
        return appendHexadecimal(text, random.between(0x4E00, 0x9FA0), digits);
    default:
        appendHexadecimal(text, 0xD83D, digits);
        return appendHexadecimal(text, random.between(0xDE00, 0xDE44), digits);
    }
}

} // namespace

void longString(JSONEmitter& out, std::uint64_t, Random& random) {
    std::string text;
    vocabulary::appendProse(text, random.between(200, 6000), random);
    out.string(text);
}

void escapedString(JSONEmitter& out, std::uint64_t, Random& random) {
    std::string text;
    const std::size_t end = random.between(30, 500);
    while (text.size() < end) {
        vocabulary::appendProse(text, random.between(1, 12), random);
        if (random.chance(70))
            text += random.pick(shortEscapes);
        else
            appendUnicodeEscape(text, random);
    }
    out.string(text);
}

void nonLatinRecord(JSONEmitter& out, std::uint64_t number, Random& random) {
    struct Member {
        std::string_view key;
        Script script;
        std::uint32_t longest;
    };
    static constexpr std::array members = std::to_array<Member>({{"título", Script::spanish, 60},
                                                                 {"описание", Script::cyrillic, 200},
                                                                 {"名称", Script::chinese, 80},
                                                                 {"説明", Script::japanese, 160},
                                                                 {"reacción", Script::emoji, 40}});
    std::string text;
    out.beginObject();
    out.key("número");
    appendDecimal(text, number);
    out.literal(text);
    for (const Member& member : members) {
        text.clear();
        vocabulary::appendProse(text, random.between(4, member.longest), member.script, random);
        out.key(member.key);
        out.string(text);
    }
    out.end();
}

} // namespace quelm::bench::items
