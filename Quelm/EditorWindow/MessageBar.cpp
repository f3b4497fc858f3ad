#include "Quelm/EditorWindow/MessageBar.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/Symbols.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace quelm {

namespace {

constexpr float tint = 0.08F;

int symbolSize() {
    return scaledPixels(16);
}

} // namespace

MessageBar::MessageBar(const QString& symbol, ColorRole role, QWidget* parent)
    : QWidget(parent), symbol_(symbol), role_(role), label_(new QLabel(this)) {
    label_->setFont(systemFont(TextStyle::body));
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Keys stay with the editor beside it.
    label_->setFocusPolicy(Qt::NoFocus);

    auto* layout = new QHBoxLayout(this);
    const int edge = scaledPixels(14);
    const int gap = scaledPixels(9);
    layout->setContentsMargins(edge + symbolSize() + gap, gap, edge, gap);
    layout->addWidget(label_);
}

QString MessageBar::text() const {
    return label_->text();
}

void MessageBar::setText(const QString& text) {
    label_->setText(text);
    setAccessibleName(text);
}

void MessageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    QColor color = semanticColor(role_, appearanceOf(palette()));
    const QRectF place(scaledPixels(14), label_->y() + (label_->fontMetrics().height() - symbolSize()) / 2.0,
                       symbolSize(), symbolSize());
    paintSymbol(painter, symbol_, place, color);
    color.setAlphaF(tint);
    painter.fillRect(rect(), color);
}

} // namespace quelm
