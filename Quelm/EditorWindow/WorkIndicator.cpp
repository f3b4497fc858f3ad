#include "Quelm/EditorWindow/WorkIndicator.h"

#include "FileCore/WorkProgress.h"
#include "Quelm/EditorWindow/ControlPainting.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QPainter>
#include <QTimerEvent>

#include <optional>
#include <utility>

namespace quelm {

namespace {

constexpr int stepsATurn = 24;
constexpr int millisecondsAStep = 50;
constexpr int sixteenthsOfADegree = 16;
constexpr int arcDegrees = 100;
constexpr int wholePercent = 100;
constexpr float trackOpacity = 0.2F;

} // namespace

WorkIndicator::WorkIndicator(QWidget* parent) : QProgressBar(parent) {
    setRange(0, 0);
    setTextVisible(false);
    setAccessibleName(tr("Operación en curso"));
    setToolTip(tr("Operación en curso"));
}

void WorkIndicator::follow(std::shared_ptr<const WorkProgress> progress) {
    progress_ = std::move(progress);
    readProgress();
    update();
}

void WorkIndicator::readProgress() {
    const std::optional<double> fraction = progress_ ? progress_->fraction() : std::nullopt;
    setRange(0, fraction ? wholePercent : 0);
    if (fraction)
        setValue(static_cast<int>(*fraction * wholePercent));
}

QSize WorkIndicator::sizeHint() const {
    return {scaledPixels(14), scaledPixels(14)};
}

void WorkIndicator::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double stroke = scaledPixels(2);
    QRectF ring(QPointF(0, 0), QSizeF(sizeHint()));
    ring.moveCenter(QRectF(rect()).center());
    ring.adjust(stroke, stroke, -stroke, -stroke);

    const QColor color = semanticColor(ColorRole::secondaryText, appearanceOf(palette()));
    painter.setPen(QPen(translucent(color, trackOpacity), stroke));
    painter.drawEllipse(ring);
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::RoundCap));
    const bool isKnown = maximum() > 0;
    const int startDegrees = isKnown ? 90 : 90 - step_ * 360 / stepsATurn;
    const int degrees = isKnown ? value() * 360 / maximum() : arcDegrees;
    painter.drawArc(ring, startDegrees * sixteenthsOfADegree, -degrees * sixteenthsOfADegree);
}

void WorkIndicator::showEvent(QShowEvent* event) {
    timer_.start(millisecondsAStep, this);
    QProgressBar::showEvent(event);
}

void WorkIndicator::hideEvent(QHideEvent* event) {
    timer_.stop();
    QProgressBar::hideEvent(event);
}

void WorkIndicator::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId())
        return QProgressBar::timerEvent(event);
    step_ = (step_ + 1) % stepsATurn;
    readProgress();
    update();
}

} // namespace quelm
