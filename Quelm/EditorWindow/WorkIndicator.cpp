#include "Quelm/EditorWindow/WorkIndicator.h"

#include "Quelm/EditorWindow/ControlPainting.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QPainter>
#include <QTimerEvent>

namespace quelm {

namespace {

constexpr int stepsATurn = 24;
constexpr int millisecondsAStep = 50;
constexpr int sixteenthsOfADegree = 16;
constexpr int arcDegrees = 100;
constexpr float trackOpacity = 0.2F;

} // namespace

WorkIndicator::WorkIndicator(QWidget* parent) : QProgressBar(parent) {
    setRange(0, 0);
    setTextVisible(false);
    setAccessibleName(tr("Operación en curso"));
    setToolTip(tr("Operación en curso"));
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
    const int startDegrees = 90 - step_ * 360 / stepsATurn;
    painter.drawArc(ring, startDegrees * sixteenthsOfADegree, -arcDegrees * sixteenthsOfADegree);
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
    update();
}

} // namespace quelm
