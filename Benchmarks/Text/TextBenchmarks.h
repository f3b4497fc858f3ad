#pragma once

#include "Benchmarks/Text/Editor.h"
#include "TextCore/SharedText.h"

#include <string>

namespace quelm::bench {

/// A text to edit.
struct TextSubject {
    /// Such as "oneline-100MB".
    std::string name;
    SharedText text;
};

/// From the text in memory to its first painted frame, and what the editor keeps beside the text.
void measureOpening(const TextSubject& subject);

/// What a user does: keys at the start, middle and end, pages, jumps, clicks, a large paste, copying everything, undo.
/// Each operation stops after `mostSeconds`.
void measureEditing(Editor& editor, const TextSubject& subject, double mostSeconds);

/// One coloured line as long as colouring goes: letters, and quotes, which change the colours of all that follows.
void measureColouredLine();

} // namespace quelm::bench
