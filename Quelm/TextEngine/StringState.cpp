#include "Quelm/TextEngine/StringState.h"

#include "TextCore/TextRope.h"

#include <algorithm>
#include <string>

namespace quelm {

namespace {

/// How much of a long line is looked at first. Most texts say enough in it.
constexpr std::int64_t firstLook = 16 * 1024;

/// How many signs without a contrary one decide.
constexpr int enoughSigns = 16;

constexpr std::string_view blanks = " \t\r\n";

bool opensAfter(char byte) {
    return byte == '[' || byte == '{' || byte == ',' || byte == ':';
}

bool closesBefore(char byte) {
    return byte == ']' || byte == '}' || byte == ',' || byte == ':';
}

/// How many blanks beside a quote are looked past.
constexpr std::size_t fewBlanks = 16;

/// The byte of a stretch nearest to its start that is not blank; 0 when it is none of the first few.
char firstInk(std::string_view stretch) {
    const std::size_t place = stretch.substr(0, fewBlanks).find_first_not_of(blanks);
    return place == std::string_view::npos ? '\0' : stretch[place];
}

char lastInk(std::string_view stretch) {
    stretch = stretch.substr(stretch.size() - std::min(stretch.size(), fewBlanks));
    const std::size_t place = stretch.find_last_not_of(blanks);
    return place == std::string_view::npos ? '\0' : stretch[place];
}

bool isDecided(const StringEvidence& evidence) {
    return std::min(evidence.outside, evidence.inside) == 0 &&
           std::max(evidence.outside, evidence.inside) >= enoughSigns;
}

/// Whether an odd number of backslashes, not too many to look at, ends at a place.
bool isEscaped(const TextRope& text, std::int64_t place) {
    std::int64_t backslashes = 0;
    while (place > 0 && backslashes <= StringState::longestEscapes) {
        const TextRope::Chunk chunk = text.chunkBefore(place);
        const std::string_view bytes = chunk.bytes.substr(0, static_cast<std::size_t>(place - chunk.location));
        const std::size_t run = bytes.size() - (bytes.find_last_not_of('\\') + 1);
        backslashes += static_cast<std::int64_t>(run);
        if (run < bytes.size())
            break;
        place = chunk.location;
    }
    return backslashes <= StringState::longestEscapes && backslashes % 2 == 1;
}

} // namespace

StringEvidence StringEvidence::in(std::string_view stretch) {
    StringEvidence evidence;
    // Found in leaps: texts have long stretches without the one or the other.
    std::size_t quote = stretch.find('"');
    std::size_t backslash = stretch.find('\\');
    while (quote != backslash) {
        if (backslash < quote) {
            ++(evidence.isOdd ? evidence.outside : evidence.inside);
            const std::size_t next = backslash + 2;
            if (quote < next)
                quote = stretch.find('"', next);
            backslash = stretch.find('\\', next);
            continue;
        }
        const char before = lastInk(stretch.substr(0, quote));
        const char after = firstInk(stretch.substr(quote + 1));
        const bool opens = opensAfter(before);
        if (before != '\0' && after != '\0' && opens != closesBefore(after))
            ++(opens != evidence.isOdd ? evidence.outside : evidence.inside);
        evidence.isOdd = !evidence.isOdd;
        quote = stretch.find('"', quote + 1);
    }
    return evidence;
}

StringState StringState::insideAt(const TextRope& text, std::int64_t place) {
    return {true, isEscaped(text, place)};
}

StringState StringState::at(const TextRope& text, std::int64_t place, std::int64_t limit) {
    std::int64_t look = firstLook;
    for (std::int64_t start = place; start > 0;) {
        const TextRope::Chunk chunk = text.chunkBefore(start);
        const std::string_view before = chunk.bytes.substr(0, static_cast<std::size_t>(start - chunk.location));
        const std::size_t lineFeed = before.rfind('\n');
        if (lineFeed != std::string_view::npos) {
            StringState state = outside();
            const std::int64_t lineStart = chunk.location + static_cast<std::int64_t>(lineFeed) + 1;
            text.forEachChunk(ByteRange::between(lineStart, place),
                              [&](std::string_view bytes) { state.advance(bytes); });
            return state;
        }
        start = chunk.location;
        const bool isLast = place - start >= limit;
        if (start == 0 || (place - start < look && !isLast))
            continue;

        look *= 4;
        const std::string bytes = text.bytes(ByteRange::between(start, place));
        const std::string_view stretch = bytes;
        const StringEvidence evidence = StringEvidence::in(stretch.substr(isEscaped(text, start) ? 1 : 0));
        if (!isLast && !isDecided(evidence))
            continue;
        const bool beginsInside = evidence.inside > evidence.outside;
        return beginsInside != evidence.isOdd ? insideAt(text, place) : outside();
    }
    StringState state = outside();
    text.forEachChunk(ByteRange::between(0, place), [&](std::string_view bytes) { state.advance(bytes); });
    return state;
}

} // namespace quelm
