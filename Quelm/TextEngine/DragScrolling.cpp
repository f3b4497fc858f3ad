#include "Quelm/TextEngine/DragScrolling.h"

#include <QTimerEvent>

#include <algorithm>
#include <cstdlib>

namespace quelm {

namespace {

constexpr int stepMilliseconds = 25;

/// How far outside of [first, last] a coordinate is.
int excess(int coordinate, int first, int last) {
    return coordinate - std::clamp(coordinate, first, std::max(first, last));
}

/// The pixels of a step: few beside the edge, so that one can stop at a character, and hundreds far from it.
int stepFor(int distance) {
    constexpr int longest = 2000;
    const int length = std::min(std::abs(distance), longest);
    const int step = length == 0 ? 0 : 2 + length / 3 + length * length / 144;
    return distance < 0 ? -step : step;
}

} // namespace

void DragScrolling::follow(const QPoint& place, const QRect& area) {
    step_ = {stepFor(excess(place.x(), area.left(), area.right())),
             stepFor(excess(place.y(), area.top(), area.bottom()))};
    if (step_.isNull())
        timer_.stop();
    else if (!timer_.isActive())
        timer_.start(stepMilliseconds, this);
}

void DragScrolling::stop() {
    timer_.stop();
}

void DragScrolling::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId())
        Q_EMIT stepped(step_);
}

} // namespace quelm
