#pragma once

#include <QtGlobal>

#include <algorithm>

namespace quelm {

/// A stretch of a text in UTF-16 code units.
struct TextRange {
    qint64 location = 0;
    qint64 length = 0;

    qint64 end() const { return location + length; }
    bool isEmpty() const { return length == 0; }
    /// Whether the unit after `offset` is in the range.
    bool contains(qint64 offset) const { return location <= offset && offset < end(); }

    static TextRange between(qint64 start, qint64 end) { return {start, end - start}; }
    /// The stretch that both have in common; empty, at the nearest place of this one, when there is none.
    TextRange intersection(TextRange other) const {
        const qint64 start = std::clamp(other.location, location, end());
        return between(start, std::clamp(other.end(), start, end()));
    }

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

} // namespace quelm
