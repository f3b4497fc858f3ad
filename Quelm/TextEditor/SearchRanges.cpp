#include "Quelm/TextEditor/SearchRanges.h"

#include <string_view>

namespace quelm {

namespace {

qint64 utf16Length(std::string_view utf8) {
    qint64 units = 0;
    for (const char byte : utf8) {
        const auto value = static_cast<unsigned char>(byte);
        units += (value & 0xC0) != 0x80;
        units += value >= 0xF0;
    }
    return units;
}

} // namespace

std::vector<TextRange> textRanges(const TextRope& text, const std::vector<ByteRange>& ranges) {
    std::vector<TextRange> result;
    if (ranges.empty())
        return result;
    result.reserve(ranges.size());
    const ByteRange spanned = ByteRange::between(ranges.front().location, ranges.back().end());
    const std::string bytes = text.bytes(spanned);
    const auto between = [&](qint64 start, qint64 end) {
        return utf16Length(std::string_view(bytes).substr(static_cast<std::size_t>(start - spanned.location),
                                                          static_cast<std::size_t>(end - start)));
    };
    qint64 place = spanned.location;
    qint64 offset = text.summaryBefore(place).utf16;
    for (const ByteRange& range : ranges) {
        offset += between(place, range.location);
        const qint64 length = between(range.location, range.end());
        result.push_back({offset, length});
        offset += length;
        place = range.end();
    }
    return result;
}

} // namespace quelm
