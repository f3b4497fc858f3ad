#include "Quelm/EditorWindow/ElidedLabel.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/ToolTipText.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <utility>

namespace quelm {

ElidedLabel::ElidedLabel(Qt::TextElideMode elideMode, QWidget* parent) : QLabel(parent), elideMode_(elideMode) {
    setTextFormat(Qt::PlainText);
    setFont(systemFont(TextStyle::caption));
}

void ElidedLabel::setColorRole(ColorRole role) {
    if (std::exchange(role_, role) != role)
        update();
}

void ElidedLabel::setText(const QString& text, const QString& wholeText) {
    wholeText_ = wholeText;
    naturalWidth_ = fontMetrics().horizontalAdvance(text);
    QLabel::setText(text);
}

QString ElidedLabel::shownText() const {
    return isElided() ? fontMetrics().elidedText(text(), elideMode_, width()) : text();
}

QSize ElidedLabel::sizeHint() const {
    return {naturalWidth_, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && isElided()) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), toolTipText(wholeText_.toStdString()), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(semanticColor(role_, appearanceOf(palette())));
    painter.setLayoutDirection(Qt::LeftToRight);
    // Fonts of one size stand on one line, whatever room they ask for above and below.
    const QFontMetrics caption(systemFont(TextStyle::caption));
    const int baseline = (height() + caption.ascent() - caption.descent() + 1) / 2;
    painter.drawText(QPoint(0, baseline), shownText());
}

} // namespace quelm
