#pragma once

#include "Quelm/TextEngine/LineGeometry.h"

#include <QString>

namespace quelm {

/// A line of printable ASCII and tabs in one row: places are arithmetic.
class PlainLine final : public LineGeometry {
public:
    PlainLine(QString text, TextFont font);

    qint64 length() const override { return text_.size(); }
    qint64 rowCount() const override { return 1; }
    qint64 rowOf(qint64) const override { return 0; }
    TextRange rowRange(qint64) const override { return {0, length()}; }
    double x(qint64 unit) const override;
    qint64 unitAt(qint64 row, double x) const override;
    double width(qint64) const override { return x(length()); }
    void appendStretches(qint64 row, TextRange units, Stretches& stretches) const override;
    CaretPlace compositionCaret() const override { return {}; }
    void paint(const RowPainting& painting, qint64 row) const override;
    void forgetColors() const override {}

    /// The width in cells of a line, were it plain, with its tabs reaching to their stops.
    static qint64 columnsOf(QStringView text);

private:
    qint64 columnOf(qint64 unit) const;

    const QString text_;
    const TextFont font_;
    /// The column of every unit and of the end; empty when there are no tabs and unit and column are the same.
    std::vector<qint32> columns_;
};

} // namespace quelm
