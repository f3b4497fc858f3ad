#include "Quelm/TextEngine/FindIndicator.h"

#include <algorithm>

namespace quelm {

namespace {

constexpr int milliseconds = 1000;
/// The part of that time before the fading begins.
constexpr double steadyPart = 0.4;

} // namespace

FindIndicator::FindIndicator(QObject* parent) : QObject(parent) {
    fading_.setStartValue(0.0);
    fading_.setEndValue(1.0);
    fading_.setDuration(milliseconds);
    connect(&fading_, &QVariantAnimation::valueChanged, this, &FindIndicator::changed);
    connect(&fading_, &QVariantAnimation::finished, this, &FindIndicator::hide);
}

void FindIndicator::show(TextRange range) {
    fading_.stop();
    range_ = range;
    fading_.start();
    Q_EMIT changed();
}

void FindIndicator::hide() {
    if (!range_)
        return;
    range_.reset();
    fading_.stop();
    Q_EMIT changed();
}

double FindIndicator::opacity() const {
    const double passed = fading_.currentValue().toDouble();
    return std::clamp((1 - passed) / (1 - steadyPart), 0.0, 1.0);
}

} // namespace quelm
