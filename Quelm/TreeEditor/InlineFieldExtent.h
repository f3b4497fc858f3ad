#pragma once

#include "Quelm/TextEngine/TextLayout.h"

namespace quelm {

/// How many rows and how much width the text of an inline field would like, besides how the field shows it at present.
/// Neither a text of more than `longestMeasured` units nor one of more than `mostMeasuredLines` lines is looked at: it
/// wants all that it can get, as nearly all such texts do. A question thus costs no more than to lay out a text of that
/// length. For the main thread.
class InlineFieldExtent {
public:
    static constexpr qint64 longestMeasured = 2048;
    static constexpr qint64 mostMeasuredLines = 128;

    /// `storage` must outlive the extent, which follows it only through `noteEdit`.
    InlineFieldExtent(const TextStorage& storage, const TextFont& font);

    /// As `TextLayout` takes it.
    void noteEdit(TextRange range, qint64 delta);
    void setComposition(const TextLayout::Composition& composition);

    /// The width of the widest line in whole logical pixels; `most` if it is that or more.
    int width(int most) const;
    /// The lines; `most` if there are as many or more.
    int lines(int most) const;
    /// The rows that the lines wrap into at a width; `most` if there are as many or more.
    int wrappedRows(int width, int most);

private:
    bool isMeasured() const {
        return storage_.length() <= longestMeasured && storage_.lineCount() <= mostMeasuredLines;
    }

    const TextStorage& storage_;
    TextLayout unwrapped_;
    TextLayout wrapped_;
};

} // namespace quelm
