#include "JSONCore/TreeRow.h"

#include "TextCore/Graphemes.h"

#include <algorithm>

namespace quelm {

namespace {

constexpr std::size_t longestWholeText = 200; // bytes
constexpr std::int64_t shortenedLength = 200; // characters

bool isTrailByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string_view previewOf(std::string_view text) {
    std::size_t size = std::min(text.size(), TreeRow::longestPreview);
    while (size > 0 && size < text.size() && isTrailByte(text[size]))
        --size;
    return text.substr(0, size);
}

} // namespace

bool TreeRow::isValueShortened() const {
    // A shortened text keeps 200 bytes at least, and three follow.
    return value.size() > longestWholeText;
}

std::string TreeRow::previewText(std::string_view scalar) {
    return displayText(previewOf(scalar));
}

std::string_view TreeRow::previewKey(std::string_view key) {
    return previewOf(key);
}

std::string TreeRow::displayText(std::string_view scalar) {
    if (scalar.size() <= longestWholeText)
        return std::string(scalar);
    return std::string(graphemes::prefix(scalar, shortenedLength)) + "…";
}

bool operator==(const TreeRow& left, const TreeRow& right) {
    return left.id == right.id && left.depth == right.depth && left.label == right.label && left.kind == right.kind &&
           canonical::equal(left.value, right.value) && left.childCount == right.childCount &&
           left.isExpanded == right.isExpanded && left.isDuplicateKey == right.isDuplicateKey;
}

} // namespace quelm
