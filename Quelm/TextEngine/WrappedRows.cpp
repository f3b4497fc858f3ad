#include "Quelm/TextEngine/WrappedRows.h"

namespace quelm {

namespace {

constexpr auto linesOf = [](const auto& summary) { return summary.lines; };
constexpr auto rowsOf = [](const auto& summary) { return summary.rows; };

} // namespace

WrappedRows::WrappedRows(std::span<const LineRows> lines) : lines_(lines) {}

WrappedRows::Lines::Place WrappedRows::placeOfLine(qint64 line) const {
    require(0 <= line && line < lineCount(), "rows are asked of a line of the text");
    return lines_.find(linesOf, line);
}

LineRows WrappedRows::at(qint64 line) const {
    return *placeOfLine(line).element;
}

qint64 WrappedRows::rowsBefore(qint64 line) const {
    return placeOfLine(line).before.rows;
}

WrappedRows::Place WrappedRows::placeOf(qint64 row) const {
    require(0 <= row && row < rowCount(), "a row is one of the text");
    const Traits::Summary before = lines_.find(rowsOf, row).before;
    return {before.lines, row - before.rows};
}

void WrappedRows::set(qint64 line, LineRows rows) {
    if (!(at(line) == rows))
        replace(line, 1, std::span(&rows, 1));
}

void WrappedRows::replace(qint64 line, qint64 removed, std::span<const LineRows> added) {
    require(0 <= line && removed >= 0 && line + removed <= lineCount(), "replaced lines are lines of the text");
    const Lines front = lines_.split(linesOf, line).first;
    const Lines back = lines_.split(linesOf, line + removed).second;
    lines_ = front + Lines(added) + back;
}

} // namespace quelm
