#include "JSONCore/TreeEdit.h"

#include "TextCore/CanonicalText.h"

namespace quelm {

bool operator==(const TreeEdit::SetKey& left, const TreeEdit::SetKey& right) {
    return left.id == right.id && canonical::equal(left.key.view(), right.key.view());
}

bool operator==(const TreeEdit::SetValue& left, const TreeEdit::SetValue& right) {
    return left.id == right.id && left.kind == right.kind && canonical::equal(left.text.view(), right.text.view());
}

NodeID TreeEdit::id() const {
    return std::visit([](const auto& payload) { return payload.id; }, case_);
}

} // namespace quelm
