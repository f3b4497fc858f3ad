#include "Quelm/Documents/SameContent.h"

#include "JSONCore/Storage/TreeStorage.h"

namespace quelm {

namespace {

bool isSameText(const std::optional<TextRope>& left, const std::optional<TextRope>& right) {
    return left.has_value() == right.has_value() && (!left || left->isSameValue(*right));
}

bool isSameTree(const std::optional<JSONTree>& left, const std::optional<JSONTree>& right) {
    return left.has_value() == right.has_value() && (!left || &storageOf(*left) == &storageOf(*right));
}

} // namespace

bool isSameContent(const JSONContent& left, const JSONContent& right) {
    return isSameText(left.text, right.text) && isSameTree(left.tree, right.tree) &&
           left.parseError == right.parseError && left.style == right.style;
}

} // namespace quelm
