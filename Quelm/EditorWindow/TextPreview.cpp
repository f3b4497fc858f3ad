#include "Quelm/EditorWindow/TextPreview.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/VisibleText.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

constexpr qsizetype mostLines = 400;
constexpr std::int64_t mostCharactersALine = 300;

/// What is read of the text at most: lines may be of any length.
constexpr std::size_t mostBytes = std::size_t{4} << 20;

constexpr int tabWidth = 4;

/// Far more bytes than the characters of a line have.
constexpr std::size_t mostBytesALine = std::size_t{16} << 10;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Tabs indent text, so that here they are painted as room rather than as signs.
VisibleText shownLine(std::string_view line) {
    std::string expanded;
    for (const char byte : line) {
        if (expanded.size() >= mostBytesALine && !isContinuation(byte))
            break;
        if (byte == '\t')
            expanded.append(tabWidth - expanded.size() % tabWidth, ' ');
        else
            expanded += byte;
    }
    return visibleText(expanded, mostCharactersALine);
}

} // namespace

TextPreview::TextPreview(const SharedText& text, QWidget* parent)
    : QAbstractScrollArea(parent), font_(monospacedFont(TextStyle::body)), metrics_(font_) {
    setAccessibleName(tr("Vista previa del texto"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Base);

    std::string_view rest = text.view().substr(0, mostBytes);
    while (!rest.empty() && lines_.size() < mostLines) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(rest.size(), end + 1));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const VisibleText shown = shownLine(line);
        lines_ += shown.text;
        isPartial_ = isPartial_ || shown.isCut;
    }
    isPartial_ = isPartial_ || !rest.empty() || text.size() > mostBytes;
}

void TextPreview::markLine(std::int64_t line) {
    markedLine_ = line;
    isMarkToBeShown_ = true;
    updateExtents();
    viewport()->update();
}

int TextPreview::lineHeight() const {
    return static_cast<int>(std::ceil(metrics_.lineSpacing() * 1.2));
}

double TextPreview::gutterWidth() const {
    const auto digits = static_cast<double>(QString::number(std::max<qsizetype>(lines_.size(), 100)).size());
    return digits * metrics_.horizontalAdvance(u'0') + scaledPixels(28);
}

void TextPreview::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setFont(font_);
    painter.setLayoutDirection(Qt::LeftToRight);
    const Appearance appearance = appearanceOf(palette());
    const int top = scaledPixels(8) - verticalScrollBar()->value();
    const int height = lineHeight();
    const double gutter = gutterWidth();
    const auto first = std::max<qsizetype>(0, (event->rect().top() - top) / height);
    const auto end = std::min<qsizetype>(lines_.size(), (event->rect().bottom() - top) / height + 1);

    for (qsizetype line = first; line < end; ++line) {
        const QRectF area(0, top + static_cast<int>(line) * height, viewport()->width(), height);
        if (markedLine_ == line + 1) {
            QColor mark = semanticColor(ColorRole::red, appearance);
            mark.setAlphaF(static_cast<float>(badgeOpacity));
            painter.fillRect(area, mark);
        }
        painter.setPen(semanticColor(ColorRole::secondaryText, appearance));
        painter.drawText(QRectF(0, area.top(), gutter - scaledPixels(14), height), Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(line + 1));
        painter.setPen(palette().color(QPalette::Text));
        painter.setClipRect(QRectF(gutter, area.top(), area.width() - gutter, height));
        const double baseline = area.top() + std::round((height + metrics_.ascent() - metrics_.descent()) / 2);
        painter.drawText(QPointF(gutter - horizontalScrollBar()->value(), baseline), lines_[line]);
        painter.setClipping(false);
    }
}

void TextPreview::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    updateExtents();
}

void TextPreview::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateExtents();
}

void TextPreview::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        font_ = monospacedFont(TextStyle::body);
        metrics_ = QFontMetricsF(font_);
        updateExtents();
    }
}

void TextPreview::updateExtents() {
    qsizetype longest = 0;
    for (const QString& line : lines_)
        longest = std::max(longest, line.size());
    const int height = static_cast<int>(lines_.size()) * lineHeight() + 2 * scaledPixels(8);
    const double advance = metrics_.horizontalAdvance(u'0');
    const auto width = static_cast<int>(gutterWidth() + static_cast<double>(longest + 2) * advance);
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(lineHeight());
    horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(static_cast<int>(4 * advance));
    showMark();
}

void TextPreview::showMark() {
    if (!isMarkToBeShown_ || !isVisible())
        return;
    isMarkToBeShown_ = false;
    if (*markedLine_ > lines_.size())
        return;
    const auto middle = static_cast<int>(*markedLine_ - 1) * lineHeight() - viewport()->height() / 2;
    verticalScrollBar()->setValue(middle);
}

} // namespace quelm
