#include "Quelm/TreeEditor/InlineFieldExtent.h"

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

int atMost(qint64 count, int most) {
    return static_cast<int>(std::min<qint64>(count, most));
}

bool isSame(const TextLayout::Composition& left, const TextLayout::Composition& right) {
    // Where a composition without text is makes no difference.
    return left.text == right.text && (left.text.isEmpty() || left.offset == right.offset);
}

} // namespace

InlineFieldExtent::InlineFieldExtent(const TextStorage& storage, const TextFont& font)
    : storage_(storage), unwrapped_(storage, font), wrapped_(storage, font) {}

void InlineFieldExtent::noteEdit(TextRange range, qint64 delta) {
    // What the edit made too long is forgotten rather than followed: to lay out a long wrapped text anew costs its
    // length at every width.
    if (!isMeasured())
        wrapped_.setWrapWidth(std::nullopt);
    unwrapped_.noteEdit(range, delta);
    wrapped_.noteEdit(range, delta);
}

void InlineFieldExtent::setComposition(const TextLayout::Composition& composition) {
    if (isSame(composition, unwrapped_.composition()))
        return;
    unwrapped_.setComposition(composition);
    wrapped_.setComposition(composition);
}

int InlineFieldExtent::width(int most) const {
    if (!isMeasured())
        return most;
    double widest = 0;
    for (qint64 row = 0; row < unwrapped_.rowCount() && widest < most; ++row)
        widest = std::max(widest, unwrapped_.width(row));
    return std::min(static_cast<int>(std::ceil(widest)), most);
}

int InlineFieldExtent::lines(int most) const {
    return atMost(storage_.lineCount(), most);
}

int InlineFieldExtent::wrappedRows(int width, int most) {
    if (!isMeasured())
        return most;
    wrapped_.setWrapWidth(width);
    return atMost(wrapped_.rowCount(), most);
}

} // namespace quelm
