#include "JSONCore/JSONParser.h"

#include "JSONCore/NumberGrammar.h"
#include "JSONCore/ParseMessages.h"
#include "JSONCore/Storage/DocumentBuilder.h"
#include "JSONCore/StringDecoding.h"
#include "TextCore/UTF8.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <utility>

// This file is compiled once for every instruction set that Highway knows; the one that fits the processor runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "JSONCore/JSONParser.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h.
#include <hwy/highway.h>

#ifndef QUELM_JSONPARSER_ONCE
#define QUELM_JSONPARSER_ONCE

namespace quelm {

/// How a parse ended: `message` is null when all went well, or when it was cancelled.
struct ParseOutcome {
    const char* message = nullptr;
    std::int64_t offset = 0;
    bool isCancelled = false;
};

} // namespace quelm

#endif

HWY_BEFORE_NAMESPACE();
namespace quelm::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// One pass over the text. Places are pointers into it; at least 64 zero bytes follow its end, so that whole vectors
/// may be loaded anywhere and every scan stops there at the latest. A scan that fails returns null and notes why and
/// where.
class Parser {
public:
    Parser(std::string_view text, TreeBuilder& builder, const std::stop_token& stop)
        : begin_(text.data()), end_(text.data() + text.size()), builder_(builder), stop_(stop) {}

    ParseOutcome run() {
        const char* place = begin_;
        if (std::string_view(begin_, end_).starts_with("\xEF\xBB\xBF"))
            place += 3;
        place = parseTopLevelValue(place);
        if (!place)
            return {failure_.message, failure_.place - begin_, isCancelled_};
        place = skipWhiteSpace(place);
        if (place != end_)
            return {parsemessages::contentAfterRoot, place - begin_, false};
        return {};
    }

private:
    /// Each turn of the loop reads one value and all that may follow it before the next: closing brackets, a comma, a
    /// key.
    const char* parseTopLevelValue(const char* place) {
        TextRef key;
        for (;;) {
            if (place >= nextCancellationCheck_ && isCancelledAt(place)) [[unlikely]]
                return nullptr;
            place = skipWhiteSpace(place);
            switch (*place) {
            case '"': {
                const StringLiteral string = parseString(place);
                if (!string.end) [[unlikely]]
                    return nullptr;
                builder_.addScalar(NodeKind::string, key, string.text);
                place = string.end;
                break;
            }
            case '{':
                builder_.open(NodeKind::object, key);
                place = skipWhiteSpace(place + 1);
                if (*place == '}') {
                    ++place;
                    builder_.close();
                    break;
                }
                place = parseKey(place, key);
                if (!place) [[unlikely]]
                    return nullptr;
                continue;
            case '[':
                builder_.open(NodeKind::array, key);
                place = skipWhiteSpace(place + 1);
                if (*place == ']') {
                    ++place;
                    builder_.close();
                    break;
                }
                key = {};
                continue;
            case 't':
                place = parseLiteral(place, "true", NodeKind::bool_, key);
                break;
            case 'f':
                place = parseLiteral(place, "false", NodeKind::bool_, key);
                break;
            case 'n':
                place = parseLiteral(place, "null", NodeKind::null, key);
                break;
            case '-':
            case '0':
            case '1':
            case '2':
            case '3':
            case '4':
            case '5':
            case '6':
            case '7':
            case '8':
            case '9':
                place = parseNumber(place, key);
                break;
            default:
                return place == end_ ? fail(parsemessages::expectedValue, place)
                                     : fail(parsemessages::unexpectedValue, place);
            }
            if (!place) [[unlikely]]
                return nullptr;

            // After a value.
            for (;;) {
                if (!builder_.isAnyOpen())
                    return place;
                place = skipWhiteSpace(place);
                if (builder_.innermostKind() == NodeKind::object) {
                    if (*place == ',') {
                        place = parseKey(skipWhiteSpace(place + 1), key);
                        if (!place) [[unlikely]]
                            return nullptr;
                        break;
                    }
                    if (*place != '}') [[unlikely]]
                        return place == end_ ? fail(parsemessages::unclosedObject, place)
                                             : fail(parsemessages::expectedCommaOrBrace, place);
                } else {
                    if (*place == ',') {
                        ++place;
                        key = {};
                        break;
                    }
                    if (*place != ']') [[unlikely]]
                        return place == end_ ? fail(parsemessages::unclosedArray, place)
                                             : fail(parsemessages::expectedCommaOrBracket, place);
                }
                ++place;
                builder_.close();
            }
        }
    }

    /// A string literal: its text, and the place behind it, null when it is wrong.
    struct StringLiteral {
        TextRef text;
        const char* end;
    };

    /// A member's key with the colon behind it.
    HWY_INLINE const char* parseKey(const char* place, TextRef& key) {
        if (*place != '"') [[unlikely]]
            return fail(parsemessages::expectedKey, place);
        const StringLiteral string = parseString(place);
        if (!string.end) [[unlikely]]
            return nullptr;
        key = string.text;
        place = skipWhiteSpace(string.end);
        if (*place != ':') [[unlikely]]
            return fail(parsemessages::expectedColon, place);
        return place + 1;
    }

    HWY_INLINE const char* parseLiteral(const char* place, std::string_view literal, NodeKind kind, TextRef key) {
        if (std::memcmp(place, literal.data(), literal.size()) != 0) [[unlikely]]
            return fail(parsemessages::unexpectedValue, place);
        const auto length = kind == NodeKind::null ? 0 : static_cast<std::uint32_t>(literal.size());
        builder_.addScalar(kind, key, {offsetOf(place), length, false});
        return place + literal.size();
    }

    HWY_INLINE const char* parseNumber(const char* place, TextRef key) {
        const auto at = [](const char* p) { return *p; };
        const char* after = scanNumberLiteral(place, at, skipDigits);
        if (!after) [[unlikely]]
            return fail(parsemessages::invalidNumber, place);
        builder_.addScalar(NodeKind::number, key, {offsetOf(place), static_cast<std::uint32_t>(after - place), false});
        return after;
    }

    /// The string literal at `quote`. Without an escape, its text is the input itself.
    HWY_INLINE StringLiteral parseString(const char* quote) {
        const char* first = quote + 1;
        const char* last = plainEnd(first);
        if (*last != '"') [[unlikely]]
            return parseStringWithEscapes(quote, last);
        return {{offsetOf(first), static_cast<std::uint32_t>(last - first), false}, last + 1};
    }

    /// The same for a literal that is not plain from its opening quotation mark to its closing one: `place` is the
    /// first byte that is not. Bytes are copied a vector at a time, up to a vector too many, and taken as far as they
    /// are plain.
    HWY_NOINLINE StringLiteral parseStringWithEscapes(const char* quote, const char* place) {
        const hn::CappedTag<std::uint8_t, 32> d;
        scratch_.clear();
        scratch_.append({quote + 1, place});
        for (;;) {
            char* const start = scratch_.room(hn::Lanes(d) + utf8::longestForm);
            const auto bytes = load(d, place);
            hn::StoreU(bytes, d, reinterpret_cast<std::uint8_t*>(start));
            const std::intptr_t first = firstNotPlain(d, bytes);
            if (first < 0) {
                scratch_.advance(hn::Lanes(d));
                place += hn::Lanes(d);
                continue;
            }
            place += first;
            char* out = start + first;
            if (*place == '"') {
                scratch_.advance(static_cast<std::size_t>(first));
                return {builder_.storage().append({scratch_.data(), scratch_.size()}), place + 1};
            }
            if (*place != '\\') {
                return {{},
                        place == end_ ? fail(parsemessages::unterminatedString, quote)
                                      : fail(parsemessages::controlCharacter, place)};
            }
            if (const char character = shortEscape(place[1])) {
                *out++ = character;
                place += 2;
            } else if (const LiteralFault fault = decodeLongEscape(place, end_, quote, out); fault.message) {
                return {{}, fail(fault.message, fault.place)};
            }
            scratch_.advance(static_cast<std::size_t>(out - start));
        }
    }

    /// The first byte that cannot stand in a string literal as it is.
    static HWY_INLINE const char* plainEnd(const char* place) {
        const hn::CappedTag<std::uint8_t, 32> d;
        for (;; place += hn::Lanes(d)) {
            const std::intptr_t first = firstNotPlain(d, load(d, place));
            if (first >= 0) [[likely]]
                return place + first;
        }
    }

    /// The same among the bytes of a vector, or -1. The least of three differences is 0 exactly there: one comparison
    /// instead of three keeps the way from one token to the next short.
    template <class D>
    static HWY_INLINE std::intptr_t firstNotPlain(D d, hn::Vec<D> bytes) {
        const auto fromQuote = hn::Xor(bytes, hn::Set(d, '"'));
        const auto fromBackslash = hn::Xor(bytes, hn::Set(d, '\\'));
        const auto aboveControls = hn::SaturatedSub(bytes, hn::Set(d, 0x1F));
        const auto least = hn::Min(hn::Min(fromQuote, fromBackslash), aboveControls);
        return hn::FindFirstTrue(d, hn::Eq(least, hn::Zero(d)));
    }

    static HWY_INLINE const char* skipWhiteSpace(const char* place) {
        // In compact text there is none to skip.
        if (static_cast<unsigned char>(*place) > ' ') [[likely]]
            return place;
        const hn::CappedTag<std::uint8_t, 32> d;
        for (;; place += hn::Lanes(d)) {
            const auto bytes = load(d, place);
            const auto isBreak = hn::Or(hn::Eq(bytes, hn::Set(d, '\n')), hn::Eq(bytes, hn::Set(d, '\r')));
            const auto isBlank = hn::Or(hn::Eq(bytes, hn::Set(d, ' ')), hn::Eq(bytes, hn::Set(d, '\t')));
            const std::intptr_t first = hn::FindFirstTrue(d, hn::Not(hn::Or(isBreak, isBlank)));
            if (first >= 0)
                return place + first;
        }
    }

    static HWY_INLINE const char* skipDigits(const char* place) {
        const hn::CappedTag<std::uint8_t, 16> d;
        for (;; place += hn::Lanes(d)) {
            const auto fromZero = hn::Sub(load(d, place), hn::Set(d, '0'));
            const std::intptr_t first = hn::FindFirstTrue(d, hn::Ne(hn::Min(fromZero, hn::Set(d, 9)), fromZero));
            if (first >= 0)
                return place + first;
        }
    }

    template <class D>
    static HWY_INLINE hn::Vec<D> load(D d, const char* place) {
        return hn::LoadU(d, reinterpret_cast<const std::uint8_t*>(place));
    }

    HWY_NOINLINE bool isCancelledAt(const char* place) {
        nextCancellationCheck_ = cancellationCheckAfter(place);
        isCancelled_ = stop_.stop_requested();
        failure_.place = begin_;
        return isCancelled_;
    }

    /// Where the stop token is looked at next; behind the end where the text is too short for that.
    const char* cancellationCheckAfter(const char* place) const {
        return end_ - place >= JSONParser::cancellationInterval ? place + JSONParser::cancellationInterval : end_ + 1;
    }

    HWY_NOINLINE const char* fail(const char* message, const char* place) {
        failure_ = {message, place};
        return nullptr;
    }

    std::uint32_t offsetOf(const char* place) const { return static_cast<std::uint32_t>(place - begin_); }

    const char* begin_;
    const char* end_;
    TreeBuilder& builder_;
    const std::stop_token& stop_;
    const char* nextCancellationCheck_ = cancellationCheckAfter(begin_);
    /// Decoded text of the literal at hand; its capacity serves all.
    TextBuilder scratch_;
    LiteralFault failure_;
    bool isCancelled_ = false;
};

namespace {

ParseOutcome runParser(std::string_view text, TreeBuilder& builder, const std::stop_token& stop) {
    return Parser(text, builder, stop).run();
}

} // namespace

} // namespace quelm::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quelm {

HWY_EXPORT(runParser);

std::expected<JSONTree, JSONParseError> JSONParser::parse(const TextRope& text, std::stop_token stop) {
    if (text.byteCount() > maximumTextSize)
        return std::unexpected(JSONParseError::tooLarge());
    const SharedText source = text.contiguous();
    try {
        DocumentBuilder document(source);
        const ParseOutcome outcome = HWY_DYNAMIC_DISPATCH(runParser)(source.view(), document.values(), stop);
        if (outcome.isCancelled)
            return std::unexpected(JSONParseError::cancelled());
        if (outcome.message)
            return std::unexpected(JSONParseError::at(outcome.offset, outcome.message, source.view()));
        return document.finish();
    } catch (const std::length_error&) {
        return std::unexpected(JSONParseError::tooLarge());
    }
}

} // namespace quelm

#endif
