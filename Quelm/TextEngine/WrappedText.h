#pragma once

#include "Quelm/TextEngine/ClusterShapes.h"
#include "Quelm/TextEngine/LineText.h"
#include "Quelm/TextEngine/TextFont.h"

#include <QString>

#include <memory>
#include <vector>

namespace quelm {

/// A text of bounded length, without line breaks, in rows that are no wider than a width, broken between words where
/// they can be. A row is laid out by itself once it is asked about, so that all its places lie in it whatever letters
/// it parts; the spaces that it ends with take their room like other characters. Making it shapes every character
/// little more than once.
///
/// Invariants:
/// 1. There is a row. Rows cover the text in order, and none is empty unless the text is.
/// 2. Rows begin between grapheme clusters.
/// 3. A row that is wider than the width is a single cluster. Others that would be a little wider by themselves than
///    as a part of the text are drawn narrower.
class WrappedText final : public LineText {
public:
    WrappedText(QString string, const TextFont& font, std::shared_ptr<ClusterShapes> shapes, double width);

    int length() const override { return static_cast<int>(string_.size()); }
    int rowCount() const override { return static_cast<int>(rows_.size()); }
    int rowOf(int index) const override;
    TextRange rowRange(int row) const override { return {at(row).start, at(row).length}; }
    double x(int index) const override;
    int indexAt(int row, double x) const override;
    double width(int row) const override;
    void appendStretches(int row, TextRange indexes, Stretches& stretches) const override;
    void paint(const TextPainting& painting, int row) const override;
    void forgetColors() const override;

    /// Aborts if an invariant does not hold. Lays out everything.
    void checkInvariants() const;

private:
    struct Row {
        int start = 0;
        int length = 0;
        /// Null until the row is asked about.
        mutable std::unique_ptr<const LineText> text;
        mutable double scale = 1;
    };

    const Row& at(int row) const { return rows_[static_cast<std::size_t>(row)]; }
    const Row& laidOut(int row) const;

    const QString string_;
    const TextFont font_;
    const std::shared_ptr<ClusterShapes> shapes_;
    const double width_;
    std::vector<Row> rows_;
};

} // namespace quelm
