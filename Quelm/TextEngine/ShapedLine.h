#pragma once

#include "Quelm/TextEngine/ShapedText.h"
#include "Quelm/TextEngine/TextLayout.h"

namespace quelm {

/// A line that is shaped as a whole, in one row or wrapped, perhaps with a composition in it.
class ShapedLine final : public LineGeometry {
public:
    /// A composition's offset is a unit of the line here.
    ShapedLine(QString text, const TextFont& font, std::optional<double> wrapWidth,
               const TextLayout::Composition& composition);

    qint64 length() const override { return shaped_.length() - composition_.text.size(); }
    qint64 rowCount() const override { return shaped_.rowCount(); }
    qint64 rowOf(qint64 unit) const override { return shaped_.rowOf(indexOf(unit)); }
    TextRange rowRange(qint64 row) const override;
    double x(qint64 unit) const override { return shaped_.x(indexOf(unit)); }
    qint64 unitAt(qint64 row, double x) const override;
    double width(qint64 row) const override { return shaped_.width(static_cast<int>(row)); }
    void appendStretches(qint64 row, TextRange units, Stretches& stretches) const override;
    CaretPlace compositionCaret() const override;
    void paint(const RowPainting& painting, qint64 row) const override;
    void forgetColors() const override { shaped_.forgetColors(); }

private:
    /// Indexes count in the line as it is shown, with the composition.
    int indexOf(qint64 unit) const;
    qint64 unitOf(qint64 index) const;
    TextRange indexRange(qint64 row) const { return shaped_.rowRange(static_cast<int>(row)); }
    void visitColors(const RowPainting& painting, TextRange indexes, const ShapedText::VisitColor& visit) const;
    void underlineComposition(const RowPainting& painting, qint64 row) const;

    const TextFont font_;
    const TextLayout::Composition composition_;
    const DisplayText display_;
    const ShapedText shaped_;
};

} // namespace quelm
