#include "Quelm/TextEngine/RowEstimates.h"

#include "Quelm/TextEngine/GridRows.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

/// What tells how wide a line is.
struct Extent {
    /// As `TextSummary::cells` has them.
    qint64 cells = 0;
    /// Bytes that are no printable ASCII, or more.
    qint64 others = 0;

    /// In a loop that compilers make vectors of.
    void add(std::string_view bytes) {
        for (const char byte : bytes) {
            const auto value = static_cast<unsigned char>(byte);
            cells += ((value & 0xC0) != 0x80) + (value >= 0xE0);
            others += value < 0x20 || value > 0x7E;
        }
    }
};

LineRows rowsOf(const Extent& extent, double wrapWidth, const TextFont& font) {
    if (extent.cells > TextLayout::segmentLength)
        return LineRows::estimate(GridRows::rowsOfCells(extent.cells, wrapWidth, font));
    const qint64 mostCells = GridRows::mostCells(wrapWidth, font);
    if (extent.cells <= mostCells)
        return extent.others == 0 ? LineRows::exact(1) : LineRows::estimate(1);
    return LineRows::estimate((extent.cells + mostCells - 1) / mostCells);
}

/// When lines are longer than this on average, the sums that the text has tell their lengths faster than their bytes.
constexpr qint64 longLine = 1024;

std::vector<LineRows> rowsOfLongLines(const TextRope& text, LineSpan lines, double wrapWidth, const TextFont& font) {
    std::vector<LineRows> rows;
    qint64 start = text.summaryBeforeLine(lines.first).cells();
    for (qint64 line = lines.first; line < lines.first + lines.count; ++line) {
        const bool isLast = line + 1 == text.lineCount();
        const qint64 end = isLast ? text.summary().cells() : text.summaryBeforeLine(line + 1).cells();
        const qint64 lineFeed = isLast ? 0 : 1;
        rows.push_back(rowsOf({end - start - lineFeed, end - start}, wrapWidth, font));
        start = end;
    }
    return rows;
}

} // namespace

std::vector<LineRows> estimatedRows(const TextRope& text, LineSpan lines, double wrapWidth, const TextFont& font) {
    const qint64 endLine = lines.first + lines.count;
    const std::int64_t start = text.summaryBeforeLine(lines.first).bytes;
    const std::int64_t end = endLine < text.lineCount() ? text.summaryBeforeLine(endLine).bytes : text.byteCount();

    if ((end - start) / lines.count > longLine)
        return rowsOfLongLines(text, lines, wrapWidth, font);

    std::vector<LineRows> rows;
    rows.reserve(static_cast<std::size_t>(lines.count));
    Extent extent;
    const auto finishLine = [&] { rows.push_back(rowsOf(std::exchange(extent, {}), wrapWidth, font)); };
    text.forEachChunk(ByteRange::between(start, end), [&](std::string_view bytes) {
        std::size_t lineFeed = bytes.find('\n');
        for (; lineFeed != std::string_view::npos; lineFeed = bytes.find('\n')) {
            extent.add(bytes.substr(0, lineFeed));
            finishLine();
            bytes.remove_prefix(lineFeed + 1);
        }
        extent.add(bytes);
    });
    // The last line of a text has no line feed.
    if (endLine == text.lineCount())
        finishLine();
    require(static_cast<qint64>(rows.size()) == lines.count, "every line has rows");
    return rows;
}

} // namespace quelm
