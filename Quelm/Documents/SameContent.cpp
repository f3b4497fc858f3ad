#include "Quelm/Documents/SameContent.h"

namespace quelm {

namespace {

/// Of two texts or two trees, without looking into them.
template <class Value>
bool isSame(const std::optional<Value>& left, const std::optional<Value>& right) {
    return left.has_value() == right.has_value() && (!left || left->isSameValue(*right));
}

} // namespace

bool isSameContent(const JSONContent& left, const JSONContent& right) {
    return isSame(left.text, right.text) && isSame(left.tree, right.tree) && left.parseError == right.parseError &&
           left.style == right.style;
}

} // namespace quelm
