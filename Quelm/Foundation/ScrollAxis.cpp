#include "Quelm/Foundation/ScrollAxis.h"

#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

/// Up to here a value of the bar is a pixel. Far enough from the largest integer for a style to add page and value.
constexpr std::int64_t longestBar = 1 << 30;

} // namespace

ScrollAxis::ScrollAxis(QScrollBar& bar, QObject* parent) : QObject(parent), bar_(bar) {
    connect(&bar_, &QScrollBar::valueChanged, this, &ScrollAxis::barMoved);
    connect(&bar_, &QScrollBar::actionTriggered, this, &ScrollAxis::barActed);
}

void ScrollAxis::setExtent(std::int64_t contentLength, std::int64_t visibleLength, std::int64_t step) {
    maximum_ = std::max<std::int64_t>(0, contentLength - visibleLength);
    visibleLength_ = visibleLength;
    step_ = step;
    const std::int64_t before = position_;
    position_ = std::clamp<std::int64_t>(position_, 0, maximum_);
    updateBar();
    if (position_ != before)
        Q_EMIT positionChanged();
}

void ScrollAxis::setPosition(std::int64_t position) {
    position = std::clamp<std::int64_t>(position, 0, maximum_);
    if (position == position_)
        return;
    position_ = position;
    updateBar();
    Q_EMIT positionChanged();
}

void ScrollAxis::reveal(std::int64_t start, std::int64_t length) {
    if (start < position_ || length > visibleLength_)
        setPosition(start);
    else if (start + length > position_ + visibleLength_)
        setPosition(start + length - visibleLength_);
}

void ScrollAxis::barMoved(int value) {
    if (isUpdatingBar_ || value == barValue(position_))
        return;
    const double pixelsAValue = bar_.maximum() > 0 ? static_cast<double>(maximum_) / bar_.maximum() : 1;
    setPosition(std::llround(value * pixelsAValue));
}

void ScrollAxis::barActed(int action) {
    // A value of a long bar stands for many pixels: steps are taken here, and the bar follows.
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        return scrollBy(step_);
    case QAbstractSlider::SliderSingleStepSub:
        return scrollBy(-step_);
    case QAbstractSlider::SliderPageStepAdd:
        return scrollBy(visibleLength_);
    case QAbstractSlider::SliderPageStepSub:
        return scrollBy(-visibleLength_);
    default:
        return;
    }
}

void ScrollAxis::updateBar() {
    const QScopedValueRollback updating(isUpdatingBar_, true);
    const std::int64_t barMaximum = std::min(maximum_, longestBar);
    const double valuesAPixel = maximum_ > 0 ? static_cast<double>(barMaximum) / static_cast<double>(maximum_) : 1;
    const auto inBar = [valuesAPixel](std::int64_t pixels) {
        return static_cast<int>(std::max<std::int64_t>(1, std::llround(static_cast<double>(pixels) * valuesAPixel)));
    };
    bar_.setRange(0, static_cast<int>(barMaximum));
    bar_.setPageStep(inBar(std::min(visibleLength_, longestBar)));
    bar_.setSingleStep(inBar(step_));
    bar_.setValue(barValue(position_));
}

int ScrollAxis::barValue(std::int64_t position) const {
    if (maximum_ <= longestBar)
        return static_cast<int>(position);
    const double part = static_cast<double>(position) / static_cast<double>(maximum_);
    return static_cast<int>(std::llround(part * static_cast<double>(longestBar)));
}

} // namespace quelm
