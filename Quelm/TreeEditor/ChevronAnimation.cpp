#include "Quelm/TreeEditor/ChevronAnimation.h"

namespace quelm {

namespace {

constexpr double expandedDegrees = 90;

double restingDegrees(bool isExpanded) {
    return isExpanded ? expandedDegrees : 0;
}

} // namespace

ChevronAnimation::ChevronAnimation(QObject* parent) : QVariantAnimation(parent) {
    setEasingCurve(QEasingCurve::InOutQuad);
}

void ChevronAnimation::turn(NodeID id, bool isExpanded, int milliseconds) {
    const bool isTurning = state() == Running && node_ == id;
    const double start = isTurning ? currentValue().toDouble() : restingDegrees(!isExpanded);
    stop();
    node_ = id;
    setStartValue(start);
    setEndValue(restingDegrees(isExpanded));
    setDuration(milliseconds);
    if (milliseconds > 0)
        QVariantAnimation::start();
}

double ChevronAnimation::degrees(NodeID id, bool isExpanded) const {
    return state() == Running && node_ == id ? currentValue().toDouble() : restingDegrees(isExpanded);
}

} // namespace quelm
