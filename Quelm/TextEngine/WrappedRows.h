#pragma once

#include "TextCore/SummaryTree.h"

#include <QtGlobal>

#include <span>

namespace quelm {

/// The rows that a line is wrapped into.
struct LineRows {
    quint32 count : 31 = 1;
    /// Whether the line was laid out; otherwise it is an estimate.
    quint32 isExact : 1 = 0;

    static LineRows exact(qint64 count) { return {static_cast<quint32>(count) & mostRows, 1}; }
    static LineRows estimate(qint64 count) { return {static_cast<quint32>(count) & mostRows, 0}; }
    friend bool operator==(LineRows left, LineRows right) {
        return left.count == right.count && left.isExact == right.isExact;
    }

private:
    static constexpr quint32 mostRows = 0x7FFFFFFF;
};

/// The rows of all lines of a text that wraps. O(log n) besides the lines given.
class WrappedRows {
public:
    WrappedRows() = default;
    /// O(lines). There is always a line.
    explicit WrappedRows(std::span<const LineRows> lines);

    qint64 lineCount() const { return lines_.summary().lines; }
    qint64 rowCount() const { return lines_.summary().rows; }

    LineRows at(qint64 line) const;
    void set(qint64 line, LineRows rows);
    qint64 rowsBefore(qint64 line) const;

    struct Place {
        qint64 line = 0;
        /// From the first row of the line.
        qint64 row = 0;
    };
    /// The line of a row from 0 to `rowCount() - 1`.
    Place placeOf(qint64 row) const;

    /// `removed` lines from `line` on give way to others.
    void replace(qint64 line, qint64 removed, std::span<const LineRows> added);

private:
    struct Traits {
        using Element = LineRows;
        struct Summary {
            qint64 lines = 0;
            qint64 rows = 0;
            Summary& operator+=(const Summary& other) {
                lines += other.lines;
                rows += other.rows;
                return *this;
            }
            friend bool operator==(const Summary&, const Summary&) = default;
        };
        static Summary summarize(LineRows line) { return {1, line.count}; }
        static constexpr std::uint32_t leafCapacity = 128;
    };
    using Lines = SummaryTree<Traits>;

    Lines::Place placeOfLine(qint64 line) const;

    Lines lines_;
};

} // namespace quelm
