#pragma once

#include "Quelm/TextEngine/DisplayText.h"
#include "Quelm/TextEngine/LineText.h"
#include "Quelm/TextEngine/TextLayout.h"

#include <memory>

namespace quelm {

/// A line that is laid out as a whole, in one row or wrapped, perhaps with a composition in it.
class ShapedLine final : public LineGeometry {
public:
    /// `display` is the line with the composition, and `text` has that string. The composition's offset is a unit of
    /// the line here.
    ShapedLine(DisplayText display, std::unique_ptr<const LineText> text, const TextFont& font,
               const TextLayout::Composition& composition);

    qint64 length() const override { return text_->length() - composition_.text.size(); }
    qint64 rowCount() const override { return text_->rowCount(); }
    qint64 rowOf(qint64 unit) const override { return text_->rowOf(indexOf(unit)); }
    TextRange rowRange(qint64 row) const override;
    double x(qint64 unit) const override { return text_->x(indexOf(unit)); }
    qint64 unitAt(qint64 row, double x) const override;
    double width(qint64 row) const override { return text_->width(static_cast<int>(row)); }
    void appendStretches(qint64 row, TextRange units, Stretches& stretches) const override;
    CaretPlace compositionCaret() const override;
    void paint(const RowPainting& painting, qint64 row) const override;
    void forgetColors() const override { text_->forgetColors(); }

private:
    /// Indexes count in the line as it is shown, with the composition.
    int indexOf(qint64 unit) const;
    qint64 unitOf(qint64 index) const;
    TextRange indexRange(qint64 row) const { return text_->rowRange(static_cast<int>(row)); }
    void visitColors(const RowPainting& painting, TextRange indexes, const TextPainting::VisitColor& visit) const;
    void underlineComposition(const RowPainting& painting, qint64 row) const;

    const TextFont font_;
    const TextLayout::Composition composition_;
    const DisplayText display_;
    const std::unique_ptr<const LineText> text_;
};

} // namespace quelm
