#pragma once

#include "TextCore/TextRope.h"

#include <optional>

namespace quelm {

/// Plain text that is exchanged with other programs, and within this one. For the main thread.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// The text that is there; absent when there is none. What another program put there is converted: O(n), after that
    /// program has handed it over. Lone surrogates become U+FFFD.
    virtual std::optional<TextRope> string() const = 0;

    /// Puts the text there in place of whatever was. O(1): who asks for it pays for the characters.
    virtual void setString(const TextRope& text) = 0;

    /// The system's clipboard.
    static Pasteboard& general();
};

} // namespace quelm
