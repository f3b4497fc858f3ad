#include "TextCore/RopeSearch.h"

#include "TextCore/MatchScanner.h"

#include <algorithm>
#include <bit>
#include <string>

namespace quelm {

namespace {

/// The start of a chunk about a block before `place`, or `least`.
std::int64_t blockStartBefore(const TextRope& text, std::int64_t place, std::int64_t least) {
    std::int64_t start = place;
    while (start > least && place - start < MatchScanner::blockLength)
        start = text.chunkBefore(start).location;
    return std::max(start, least);
}

/// The match that begins last among those that begin before `count` in `bytes`; `bytes` is lengthened for vectors.
std::optional<ByteRange> lastMatchIn(std::string& bytes, std::size_t count, const SearchPattern& pattern) {
    const std::size_t length = bytes.size();
    bytes.resize(length + SearchPattern::anchoredLength + positionsPerMask);
    std::vector<std::uint64_t> masks((count + positionsPerMask - 1) / positionsPerMask);
    markCandidates(reinterpret_cast<const std::uint8_t*>(bytes.data()), count, pattern.firstAnchor(),
                   pattern.secondAnchor(), masks.data());
    for (std::size_t index = masks.size(); index-- > 0;) {
        for (std::uint64_t mask = masks[index]; mask != 0;) {
            const auto bit = static_cast<std::size_t>(std::bit_width(mask) - 1);
            mask ^= std::uint64_t{1} << bit;
            const std::size_t place = index * positionsPerMask + bit;
            if (place >= count)
                continue;
            if (const std::size_t found = pattern.lengthAt(std::string_view(bytes).substr(place, length - place)))
                return ByteRange{static_cast<std::int64_t>(place), static_cast<std::int64_t>(found)};
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<ByteRange> firstMatch(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                                    const std::stop_token& stop) {
    MatchScanner scanner(text, pattern, within);
    while (!stop.stop_requested() && scanner.nextBlock())
        if (const auto match = scanner.nextInBlock())
            return match;
    return std::nullopt;
}

std::optional<ByteRange> lastMatch(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                                   const std::stop_token& stop) {
    const auto reach = static_cast<std::int64_t>(pattern.maximumLength()) - 1;
    std::string bytes;
    for (std::int64_t end = within.end(); end > within.location && !stop.stop_requested();) {
        const std::int64_t start = blockStartBefore(text, end, within.location);
        bytes.clear();
        text.forEachChunk(ByteRange::between(start, std::min(end + reach, within.end())),
                          [&](std::string_view chunk) { bytes += chunk; });
        if (auto match = lastMatchIn(bytes, static_cast<std::size_t>(end - start), pattern)) {
            match->location += start;
            return match;
        }
        end = start;
    }
    return std::nullopt;
}

std::vector<ByteRange> allMatches(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                                  const std::stop_token& stop) {
    std::vector<ByteRange> matches;
    MatchScanner scanner(text, pattern, within);
    while (scanner.nextBlock()) {
        if (stop.stop_requested())
            return {};
        while (const auto match = scanner.nextInBlock())
            matches.push_back(*match);
    }
    return matches;
}

std::int64_t countMatches(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                          const std::stop_token& stop) {
    std::int64_t count = 0;
    MatchScanner scanner(text, pattern, within);
    while (scanner.nextBlock()) {
        if (stop.stop_requested())
            return 0;
        count += scanner.countInBlock();
    }
    return count;
}

bool isMatch(const TextRope& text, const SearchPattern& pattern, ByteRange range) {
    return range.length >= static_cast<std::int64_t>(pattern.minimumLength()) &&
           range.length <= static_cast<std::int64_t>(pattern.maximumLength()) &&
           static_cast<std::int64_t>(pattern.lengthAt(text.bytes(range))) == range.length;
}

} // namespace quelm
