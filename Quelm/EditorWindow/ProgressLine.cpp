#include "Quelm/EditorWindow/ProgressLine.h"

#include "FileCore/WorkProgress.h"
#include "Quelm/EditorWindow/ControlPainting.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "TextCore/Check.h"

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

#include <algorithm>

namespace quelm {

namespace {

constexpr int millisecondsAStep = 40;
/// The moving piece goes along the line, and out of it, in so many steps.
constexpr int stepsAPass = 40;
constexpr double movingShare = 0.3;
constexpr int wholePercent = 100;
constexpr float trackOpacity = 0.2F;

} // namespace

ProgressLine::ProgressLine(std::shared_ptr<const WorkProgress> progress, QWidget* parent)
    : QProgressBar(parent), progress_(std::move(progress)) {
    require(progress_ != nullptr, "there is something to follow");
    setTextVisible(false);
    readProgress();
}

QSize ProgressLine::sizeHint() const {
    return {scaledPixels(240), scaledPixels(6)};
}

void ProgressLine::readProgress() {
    const std::optional<double> fraction = progress_->fraction();
    const bool isKnown = fraction && *fraction < 1;
    setRange(0, isKnown ? wholePercent : 0);
    if (isKnown)
        setValue(static_cast<int>(*fraction * wholePercent));
}

void ProgressLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const Appearance appearance = appearanceOf(palette());
    const QRectF line = rect();
    const double radius = line.height() / 2;
    painter.setBrush(translucent(semanticColor(ColorRole::secondaryText, appearance), trackOpacity));
    painter.drawRoundedRect(line, radius, radius);

    QRectF done = line;
    if (maximum() > 0) {
        done.setWidth(std::max(line.height(), line.width() * value() / maximum()));
    } else {
        const double length = line.width() * movingShare;
        const double place = static_cast<double>(step_) / stepsAPass;
        done.setLeft(line.left() - length + (line.width() + length) * place);
        done.setWidth(length);
        done = done.intersected(line);
    }
    painter.setBrush(semanticColor(ColorRole::accent, appearance));
    painter.drawRoundedRect(QStyle::visualRect(layoutDirection(), rect(), done.toAlignedRect()), radius, radius);
}

void ProgressLine::showEvent(QShowEvent* event) {
    timer_.start(millisecondsAStep, this);
    QProgressBar::showEvent(event);
}

void ProgressLine::hideEvent(QHideEvent* event) {
    timer_.stop();
    QProgressBar::hideEvent(event);
}

void ProgressLine::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId())
        return QProgressBar::timerEvent(event);
    step_ = (step_ + 1) % stepsAPass;
    readProgress();
    update();
}

} // namespace quelm
