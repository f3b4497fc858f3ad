#pragma once

#include "Quelm/TextEngine/AttributeRuns.h"

#include <QString>

#include <vector>

namespace quelm {

/// A stretch of text made fit to be drawn in one row: unit for unit the same, except that characters without looks of
/// their own, and those that would break a row, are visible signs.
struct DisplayText {
    QString string;
    /// Where the signs are, in order.
    std::vector<qsizetype> signs;
};

/// O(length). Tabs stay.
DisplayText displayText(QString text);

/// Whether all is printable ASCII or tabs, which need no shaping.
bool isPlainText(QStringView text);

/// The width of a unit in cells, such that sums are those of `TextSummary::cells`.
constexpr int cellsOfUnit(char16_t unit) {
    return unit < 0x800 || QChar::isSurrogate(unit) ? 1 : 2;
}

/// Calls `visit(from, length, role)` for the pieces of one colour of a stretch of `display`, in order: signs are
/// `secondaryText`, the others as their attributes say. `location` is where `display` begins among the attributes.
template <class Visit>
void forEachColor(const DisplayText& display, const AttributeRuns& attributes, qint64 location, TextRange stretch,
                  Visit&& visit) {
    auto sign = std::ranges::lower_bound(display.signs, static_cast<qsizetype>(stretch.location));
    attributes.forEach({location + stretch.location, stretch.length}, [&](const AttributeRuns::PlacedRun& placed) {
        qint64 from = placed.location - location;
        const qint64 end = placed.end() - location;
        const ColorRole role = placed.run.attributes.foreground;
        for (; sign != display.signs.end() && *sign < end; ++sign) {
            if (from < *sign)
                visit(from, *sign - from, role);
            visit(qint64{*sign}, qint64{1}, ColorRole::secondaryText);
            from = *sign + 1;
        }
        if (from < end)
            visit(from, end - from, role);
    });
}

} // namespace quelm
