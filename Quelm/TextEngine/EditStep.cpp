#include "Quelm/TextEngine/EditStep.h"

#include "Quelm/TextEngine/TextStorage.h"

#include <algorithm>

namespace quelm {

TextRope slice(const TextRope& text, TextRange range) {
    const std::int64_t start = text.summaryBeforeUTF16(range.location).bytes;
    const std::int64_t end = text.summaryBeforeUTF16(range.end()).bytes;
    return text.slice(ByteRange::between(start, end));
}

EditStep EditStep::applyTo(TextStorage& storage) const {
    EditStep opposite{.replacements = {}, .selection = selectionBefore, .selectionBefore = selection};
    opposite.replacements.reserve(replacements.size());
    for (const auto& [range, text] : replacements) {
        opposite.replacements.push_back({{range.location, text.utf16Count()}, slice(storage.text(), range)});
        storage.replaceCharacters(range, text);
    }
    std::ranges::reverse(opposite.replacements);
    return opposite;
}

} // namespace quelm
