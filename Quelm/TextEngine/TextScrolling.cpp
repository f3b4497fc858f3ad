#include "Quelm/TextEngine/TextScrolling.h"

#include "Quelm/TextEngine/TextLayout.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quelm {

namespace {

/// Beyond this, coordinates in the viewport say no more than that something is far away.
constexpr qint64 farAway = 1 << 24;

/// The steps of a horizontal scroll bar, and the margin that is kept beside the caret, in characters.
constexpr double stepInCharacters = 4;

} // namespace

TextScrolling::TextScrolling(const TextStorage& storage, const TextLayout& layout, Bars bars, QObject* parent)
    : QObject(parent), storage_(storage), layout_(layout), vertical_(bars.vertical), horizontal_(bars.horizontal),
      advance_(layout.font().advance()) {
    connect(&vertical_, &ScrollAxis::positionChanged, this, &TextScrolling::scrolled);
    connect(&horizontal_, &ScrollAxis::positionChanged, this, &TextScrolling::moved);
    settlingSoon_.setSingleShot(true);
    connect(&settlingSoon_, &QTimer::timeout, this, &TextScrolling::settle);
}

void TextScrolling::setWrapping(bool isWrapping) {
    isWrapping_ = isWrapping;
    widestRow_ = 0;
}

void TextScrolling::setInset(QSize inset) {
    inset_ = inset;
    settle();
    Q_EMIT moved();
}

void TextScrolling::setViewportSize(QSize size) {
    size_ = size;
    settle();
    Q_EMIT moved();
}

void TextScrolling::setCaretWidth(int width) {
    caretWidth_ = width;
}

void TextScrolling::noteEdit(TextRange range, qint64 delta) {
    const TextRange replaced{range.location, range.length - delta};
    const bool isAbove = replaced.end() <= topOffset_ && range.location < topOffset_;
    if (isAbove)
        topOffset_ += delta;
    // A text that became another one is as wide as what is seen of it. Until that is measured it is as wide as before,
    // so that what is seen is the same part of its lines.
    const qint64 lengthBefore = storage_.length() - delta;
    if (2 * replaced.length > lengthBefore)
        isWidthOutdated_ = true;

    updateExtents();
    if (isAbove)
        vertical_.setPosition(rememberedPosition());
    else
        rememberPlace();
    settlingSoon_.start(0);
    Q_EMIT moved();
}

void TextScrolling::noteFontChange() {
    const double growth = layout_.font().advance() / std::exchange(advance_, layout_.font().advance());
    const auto left = static_cast<double>(horizontal_.position());
    widestRow_ *= growth;
    isWidthOutdated_ = true;
    pixelsPastTop_ = std::min<qint64>(pixelsPastTop_, layout_.font().rowHeight() - 1);
    updateExtents();
    vertical_.setPosition(rememberedPosition());
    horizontal_.setPosition(std::llround(left * growth));
    settle();
    Q_EMIT moved();
}

void TextScrolling::settle() {
    if (isSettling_)
        return;
    const QScopedValueRollback settling(isSettling_, true);
    settlingSoon_.stop();
    if (std::exchange(isWidthOutdated_, false))
        widestRow_ = 0;
    // Rows that were only guessed may turn out to be others, and bring further ones into the viewport, which is small:
    // a few rounds look at everything in it.
    constexpr int mostRounds = 8;
    for (int round = 0; round < mostRounds; ++round) {
        const QSize sizeBefore = size_;
        const bool isNews = lookAtVisibleRows();
        updateExtents();
        if (isWrapping_)
            vertical_.setPosition(rememberedPosition());
        // A scroll bar that comes or goes changes the size.
        if (!isNews && size_ == sizeBefore)
            break;
    }
    if (vertical_.position() != rememberedPosition())
        rememberPlace();
}

bool TextScrolling::lookAtVisibleRows() {
    const qint64 rowsBefore = layout_.rowCount();
    const double widestBefore = widestRow_;
    const Rows rows = visibleRows();
    for (qint64 row = rows.first; row < std::min(rows.end, layout_.rowCount()); ++row) {
        if (isWrapping_)
            layout_.rowRange(row);
        else
            widestRow_ = std::max(widestRow_, layout_.width(row));
    }
    return layout_.rowCount() != rowsBefore || widestRow_ > widestBefore;
}

void TextScrolling::updateExtents() {
    const qint64 rowHeight = layout_.font().rowHeight();
    const qint64 height = layout_.rowCount() * rowHeight + qint64{2} * inset_.height();
    vertical_.setExtent(height, size_.height(), rowHeight);

    const auto width = static_cast<qint64>(std::ceil(widestRow_)) + qint64{2} * inset_.width() + caretWidth_;
    const auto step = static_cast<qint64>(std::ceil(stepInCharacters * layout_.font().advance()));
    horizontal_.setExtent(isWrapping_ ? 0 : width, size_.width(), step);
}

TextScrolling::Rows TextScrolling::rowsBetween(int top, int bottom) const {
    const qint64 rowHeight = layout_.font().rowHeight();
    const qint64 count = layout_.rowCount();
    const qint64 start = vertical_.position() + top - inset_.height();
    const qint64 end = vertical_.position() + bottom - inset_.height();
    return {std::clamp<qint64>(start / rowHeight, 0, count),
            std::clamp<qint64>((end + rowHeight - 1) / rowHeight, 0, count)};
}

qint64 TextScrolling::rowsAPage() const {
    return std::max<qint64>(1, size_.height() / layout_.font().rowHeight());
}

qint64 TextScrolling::rowTop(qint64 row) const {
    return inset_.height() + row * layout_.font().rowHeight();
}

int TextScrolling::top(qint64 row) const {
    return static_cast<int>(std::clamp(rowTop(row) - vertical_.position(), -farAway, farAway));
}

double TextScrolling::left() const {
    return static_cast<double>(inset_.width() - horizontal_.position());
}

qint64 TextScrolling::rowAt(int y) const {
    const qint64 distance = vertical_.position() + y - inset_.height();
    const qint64 row = distance < 0 ? 0 : distance / layout_.font().rowHeight();
    return std::min(row, layout_.rowCount() - 1);
}

void TextScrolling::reveal(qint64 firstRow, qint64 lastRow, double start, double end) {
    settle();
    const qint64 rowHeight = layout_.font().rowHeight();
    const qint64 spare = size_.height() - rowHeight;
    // A place that comes from afar is shown amid what is around it.
    constexpr qint64 nearRows = 2;
    const qint64 near = nearRows * rowHeight;
    const bool isFar = rowTop(lastRow) + rowHeight + near < vertical_.position() ||
                       rowTop(firstRow) - near > vertical_.position() + size_.height();
    const qint64 wanted = isFar ? size_.height() / 4 : inset_.height();
    const qint64 margin = std::clamp<qint64>(wanted, 0, std::max<qint64>(0, spare / 2));
    const bool isFitting = (lastRow - firstRow + 1) * rowHeight <= size_.height();
    const qint64 top = rowTop(isFitting ? firstRow : lastRow) - margin;
    vertical_.reveal(top, std::min<qint64>(rowTop(lastRow) + rowHeight + margin - top, size_.height()));
    revealHorizontally(start, end);
    settle();
}

void TextScrolling::revealHorizontally(double start, double end) {
    if (isWrapping_)
        return;
    if (end > widestRow_) {
        widestRow_ = end;
        updateExtents();
    }
    const qint64 width = size_.width();
    const qint64 margin = std::min<qint64>(std::llround(stepInCharacters * layout_.font().advance()), width / 4);
    const auto right = static_cast<qint64>(std::ceil(end)) + inset_.width() + caretWidth_ + margin;
    const auto left = static_cast<qint64>(std::floor(start)) + inset_.width() - margin;
    horizontal_.reveal(std::max({left, right - width, qint64{0}}), std::min(width, right - std::max(left, qint64{0})));
}

void TextScrolling::scrollRows(qint64 rows) {
    vertical_.scrollBy(rows * layout_.font().rowHeight());
}

void TextScrolling::scrolled() {
    if (!isSettling_) {
        rememberPlace();
        settle();
    }
    Q_EMIT moved();
}

void TextScrolling::rememberPlace() {
    const qint64 row = rowAt(0);
    topOffset_ = layout_.rowRange(row).location;
    pixelsPastTop_ = vertical_.position() - rowTop(row);
}

qint64 TextScrolling::rememberedPosition() const {
    return rowTop(layout_.rowOf(topOffset_)) + pixelsPastTop_;
}

} // namespace quelm
