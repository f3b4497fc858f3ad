#include "JSONCore/TreeRow.h"

#include "TextCore/Graphemes.h"

namespace quelm {

namespace {

constexpr std::size_t longestWholeText = 200; // bytes
constexpr std::int64_t shortenedLength = 200; // characters

} // namespace

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
