#include "Quelm/TextEngine/RowEstimates.h"

#include "Quelm/TextEngine/GridLine.h"

#include <string_view>

namespace quelm {

namespace {

/// The cells of some bytes, as `TextSummary::cells` has them, in a loop that compilers make vectors of.
qint64 cellsOf(std::string_view bytes) {
    qint64 cells = 0;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        cells += ((value & 0xC0) != 0x80) + (value >= 0xE0);
    }
    return cells;
}

} // namespace

std::vector<LineRows> estimatedRows(const TextRope& text, LineSpan lines, double wrapWidth, const TextFont& font) {
    const qint64 endLine = lines.first + lines.count;
    const std::int64_t start = text.summaryBeforeLine(lines.first).bytes;
    const std::int64_t end = endLine < text.lineCount() ? text.summaryBeforeLine(endLine).bytes : text.byteCount();

    std::vector<LineRows> rows;
    rows.reserve(static_cast<std::size_t>(lines.count));
    qint64 cells = 0;
    const auto finishLine = [&] {
        rows.push_back(LineRows::estimate(GridLine::rowsOfCells(cells, wrapWidth, font)));
        cells = 0;
    };
    text.forEachChunk(ByteRange::between(start, end), [&](std::string_view bytes) {
        std::size_t lineFeed = bytes.find('\n');
        for (; lineFeed != std::string_view::npos; lineFeed = bytes.find('\n')) {
            cells += cellsOf(bytes.substr(0, lineFeed));
            finishLine();
            bytes.remove_prefix(lineFeed + 1);
        }
        cells += cellsOf(bytes);
    });
    // The last line of a text has no line feed.
    if (endLine == text.lineCount())
        finishLine();
    require(static_cast<qint64>(rows.size()) == lines.count, "every line has rows");
    return rows;
}

} // namespace quelm
