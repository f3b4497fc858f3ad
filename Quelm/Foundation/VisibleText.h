#pragma once

#include <QString>

#include <cstdint>
#include <string_view>

namespace quelm {

/// The beginning of a text, made fit to be painted in one line.
struct VisibleText {
    QString text;
    /// Whether the whole text is longer; `text` then ends in "…".
    bool isCut = false;
};

/// The first `characters` of a well-formed UTF-8 text (fewer when they are absurdly long), with everything that would
/// break a line, reverse it or stay unseen drawn as a sign: "⏎" for line breaks, "⇥" for tabs, the pictures of other
/// control characters, and the escapes of the controls that have no picture. Looks at the beginning of the text only,
/// so that its cost is bounded whatever the text.
VisibleText visibleText(std::string_view utf8, std::int64_t characters);

/// The same for a text that has been cut elsewhere.
QString visibleCharacters(QStringView text);

} // namespace quelm
