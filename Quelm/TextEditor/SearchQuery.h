#pragma once

#include "TextCore/SearchPattern.h"

#include <QString>

#include <optional>

namespace quelm {

/// What the user looks for.
struct SearchQuery {
    QString text;
    CaseSensitivity sensitivity = CaseSensitivity::insensitive;

    /// Absent for an empty text, and for one with half a surrogate pair, which no text contains.
    std::optional<SearchPattern> pattern() const {
        if (text.isEmpty() || !text.isValidUtf16())
            return std::nullopt;
        return SearchPattern(text.toStdString(), sensitivity);
    }

    friend bool operator==(const SearchQuery&, const SearchQuery&) = default;
};

} // namespace quelm
