#pragma once

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEditor/EightBytes.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace quelm {

/// A token of JSON, or some characters that are none.
struct SyntaxToken {
    /// Where it ends; null if it takes more text to say.
    const char* end = nullptr;
    ColorRole role = ColorRole::text;
    bool hasLineFeed = false;
};

/// Recognises the token at the start of a piece of UTF-8. All that tells tokens apart is ASCII. Defined here because it
/// is the inner loop of colouring.
class SyntaxTokenReader {
public:
    /// `isWhole` says that no more text follows.
    SyntaxTokenReader(const char* end, bool isWhole) : end_(end), isWhole_(isWhole) {}

    /// `start` is before the end. Adjacent punctuation, and adjacent characters that are no token, come together.
    SyntaxToken tokenAt(const char* start) const {
        switch (leadOf(*start)) {
        case Lead::quote:
            return stringAt(start);
        case Lead::number:
            return complete(endWhile(start, isInNumbers), ColorRole::blue);
        case Lead::word:
            return wordAt(start);
        case Lead::punctuation:
            return {endWhile(start, [](char c) { return leadOf(c) == Lead::punctuation; }), ColorRole::secondaryText};
        case Lead::none:
            break;
        }
        return {endWhile(start, [](char c) { return leadOf(c) == Lead::none; })};
    }

    /// Whether two adjacent bytes outside of strings are of different colours, whatever is around them, and the tokens
    /// up to the first of them are what they would be if nothing followed. False says nothing.
    static bool isBetweenColors(char before, char after) {
        switch (leadOf(after)) {
        case Lead::quote:
            // Adjacent strings are of one colour.
            return before != '"';
        case Lead::number:
            return leadOf(before) == Lead::punctuation || (leadOf(before) == Lead::none && !isInNumbers(before));
        case Lead::word:
        case Lead::none:
            return leadOf(before) == Lead::punctuation;
        case Lead::punctuation:
            break;
        }
        return false;
    }

private:
    /// What the first byte of a token says about it.
    enum class Lead : std::uint8_t { none, quote, number, word, punctuation };

    static constexpr std::array<Lead, 256> leads = [] {
        std::array<Lead, 256> table{};
        const auto mark = [&](std::string_view bytes, Lead lead) {
            for (const char byte : bytes)
                table[static_cast<unsigned char>(byte)] = lead;
        };
        mark("\"", Lead::quote);
        mark("-0123456789", Lead::number);
        mark("abcdefghijklmnopqrstuvwxyz", Lead::word);
        mark(",:[]{}", Lead::punctuation);
        return table;
    }();

    static constexpr std::array<bool, 256> continuesNumber = [] {
        std::array<bool, 256> table{};
        for (const char byte : std::string_view("0123456789+-.eE"))
            table[static_cast<unsigned char>(byte)] = true;
        return table;
    }();

    static bool isInNumbers(char byte) { return continuesNumber[static_cast<unsigned char>(byte)]; }
    static Lead leadOf(char byte) { return leads[static_cast<unsigned char>(byte)]; }

    template <class Holds>
    const char* endWhile(const char* start, Holds holds) const {
        ++start;
        while (start != end_ && holds(*start))
            ++start;
        return start;
    }

    /// A token that would go on at the end if there were more text of its kind.
    SyntaxToken complete(const char* end, ColorRole role) const {
        return end != end_ || isWhole_ ? SyntaxToken{end, role} : SyntaxToken{};
    }

    SyntaxToken wordAt(const char* start) const {
        const char* end = endWhile(start, [](char c) { return leadOf(c) == Lead::word; });
        const std::string_view word(start, static_cast<std::size_t>(end - start));
        if (word == "true" || word == "false")
            return complete(end, ColorRole::orange);
        return complete(end, word == "null" ? ColorRole::gray : ColorRole::text);
    }

    SyntaxToken stringAt(const char* start) const {
        bool hasLineFeed = false;
        const char* place = nextInString(start + 1);
        while (place != end_ && *place == '\\') {
            if (end_ - place < 2)
                return openString(hasLineFeed);
            hasLineFeed = hasLineFeed || place[1] == '\n';
            place = nextInString(place + 2);
        }
        if (place == end_)
            return openString(hasLineFeed);
        hasLineFeed = hasLineFeed || *place == '\n';
        ++place;

        const char* after = place;
        while (after != end_ && (*after == ' ' || *after == '\t'))
            ++after;
        if (after == end_ && !isWhole_)
            return {};
        const bool isKey = after != end_ && *after == ':';
        return {place, isKey ? ColorRole::purple : ColorRole::green, hasLineFeed};
    }

    /// A string that the text ends in.
    SyntaxToken openString(bool hasLineFeed) const {
        return isWhole_ ? SyntaxToken{end_, ColorRole::green, hasLineFeed} : SyntaxToken{};
    }

    /// The first quote, backslash or line feed from `place` on.
    const char* nextInString(const char* place) const {
        for (; end_ - place >= EightBytes::count; place += EightBytes::count) {
            const EightBytes eight(place);
            const std::uint64_t found = eight.matches('"') | eight.matches('\\') | eight.matches('\n');
            if (found != 0)
                return place + EightBytes::first(found);
        }
        while (place != end_ && *place != '"' && *place != '\\' && *place != '\n')
            ++place;
        return place;
    }

    const char* end_;
    bool isWhole_;
};

} // namespace quelm
