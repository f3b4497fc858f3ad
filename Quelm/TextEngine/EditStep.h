#pragma once

#include "Quelm/TextEngine/TextSelection.h"
#include "TextCore/TextRope.h"

#include <vector>

namespace quelm {

class TextStorage;

/// The characters of a stretch of UTF-16 units, sharing their memory. O(log n).
TextRope slice(const TextRope& text, TextRange range);

/// A change of a text as a value: what is replaced by what, and what is selected before and after. Its texts share the
/// memory of the text that they are from, so a step that takes back the deletion of a gigabyte is small.
struct EditStep {
    struct Replacement {
        TextRange range;
        TextRope text;
    };

    /// Made one after another: the offsets of one are those of the text that the one before leaves.
    std::vector<Replacement> replacements;
    /// Once the step is made.
    TextSelection selection;
    /// Once it is taken back.
    TextSelection selectionBefore;

    /// Makes the replacements and returns the step that takes them back. The stretches must be in the text and part no
    /// surrogate pair. O(log n) besides what the texts cost to insert.
    EditStep applyTo(TextStorage& storage) const;
};

} // namespace quelm
