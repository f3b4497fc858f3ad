#pragma once

#include "Quelm/TextEngine/TextRange.h"

namespace quelm {

/// What is selected in a text: from where the selection began to where the caret is.
struct TextSelection {
    qint64 anchor = 0;
    qint64 caret = 0;

    static TextSelection at(qint64 offset) { return {offset, offset}; }
    TextRange range() const { return TextRange::between(std::min(anchor, caret), std::max(anchor, caret)); }
    bool isEmpty() const { return anchor == caret; }

    friend bool operator==(const TextSelection&, const TextSelection&) = default;
};

} // namespace quelm
