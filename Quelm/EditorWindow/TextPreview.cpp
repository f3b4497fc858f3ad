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

/// What is shown before a marked place: lines, and characters of its own line.
constexpr std::int64_t linesBeforeMark = 100;
constexpr std::size_t charactersBeforeMark = 120;

/// Far more bytes than the characters of a line have.
constexpr std::size_t mostBytesALine = std::size_t{16} << 10;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Where the last line of a text starts.
std::size_t startOfLine(std::string_view text) {
    return text.rfind('\n') + 1; // npos + 1 is 0: the first line
}

/// The end of a text, of at most so many code points.
std::string_view lastCharacters(std::string_view text, std::size_t count) {
    std::size_t start = text.size();
    for (; start > 0 && count > 0; --count) {
        --start;
        while (start > 0 && isContinuation(text[start]))
            --start;
    }
    return text.substr(start);
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
    prepare();
    addLines(text.view());
}

TextPreview::TextPreview(const SharedText& text, Place marked, QWidget* parent)
    : QAbstractScrollArea(parent), font_(monospacedFont(TextStyle::body)), metrics_(font_) {
    prepare();
    const std::string_view before = text.view().substr(0, static_cast<std::size_t>(marked.offset));
    const std::string_view after = text.view().substr(before.size());
    const std::size_t lineStart = startOfLine(before);

    // Lines before the marked one, as many as a few screens hold, if they are near.
    std::size_t start = lineStart;
    firstLineNumber_ = marked.line;
    while (start > 0 && marked.line - firstLineNumber_ < linesBeforeMark) {
        const std::size_t previous = startOfLine(before.substr(0, start - 1));
        if (before.size() - previous > mostBytes)
            break;
        start = previous;
        --firstLineNumber_;
    }
    isPartial_ = start > 0;
    addLines(before.substr(start, lineStart - start));
    const std::size_t lineEnd = std::min(after.find('\n'), after.size());
    addMarkedLine(before.substr(lineStart), after.substr(0, lineEnd));
    addLines(after.substr(std::min(after.size(), lineEnd + 1)));
    isMarkToBeShown_ = true;
}

void TextPreview::prepare() {
    setAccessibleName(tr("Vista previa del texto"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Base);
}

void TextPreview::addLine(std::string_view line) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    const VisibleText shown = shownLine(line);
    lines_ += shown.text;
    isPartial_ = isPartial_ || shown.isCut;
}

void TextPreview::addMarkedLine(std::string_view before, std::string_view after) {
    const std::string_view near = lastCharacters(before, charactersBeforeMark);
    QString text = near.size() < before.size() ? QStringLiteral("…") : QString();
    isPartial_ = isPartial_ || near.size() < before.size();
    text += shownLine(near).text;
    mark_ = {lines_.size(), text.size()};
    addLine(after);
    lines_.last().prepend(text);
}

void TextPreview::addLines(std::string_view text) {
    std::string_view rest = text.substr(0, mostBytes);
    const qsizetype limit = lines_.size() + mostLines;
    while (!rest.empty() && lines_.size() < limit) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        addLine(rest.substr(0, end));
        rest.remove_prefix(std::min(rest.size(), end + 1));
    }
    isPartial_ = isPartial_ || !rest.empty() || text.size() > mostBytes;
}

int TextPreview::lineHeight() const {
    return static_cast<int>(std::ceil(metrics_.lineSpacing() * 1.2));
}

double TextPreview::gutterWidth() const {
    const auto digits =
        static_cast<double>(QString::number(std::max<qsizetype>(firstLineNumber_ + lines_.size(), 100)).size());
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
        if (mark_ && mark_->line == line)
            paintMark(painter, area, gutter - horizontalScrollBar()->value());
        painter.setPen(semanticColor(ColorRole::secondaryText, appearance));
        painter.drawText(QRectF(0, area.top(), gutter - scaledPixels(14), height), Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(firstLineNumber_ + line));
        painter.setPen(palette().color(QPalette::Text));
        painter.setClipRect(QRectF(gutter, area.top(), area.width() - gutter, height));
        const double baseline = area.top() + std::round((height + metrics_.ascent() - metrics_.descent()) / 2);
        painter.drawText(QPointF(gutter - horizontalScrollBar()->value(), baseline), lines_[line]);
        painter.setClipping(false);
    }
}

void TextPreview::paintMark(QPainter& painter, const QRectF& line, double textLeft) const {
    QColor tint = semanticColor(ColorRole::red, appearanceOf(palette()));
    const QRectF place(textLeft + markLeft(), line.bottom() - scaledPixels(3), metrics_.horizontalAdvance(u'0'),
                       scaledPixels(2));
    painter.fillRect(place, tint);
    tint.setAlphaF(static_cast<float>(badgeOpacity));
    painter.fillRect(line, tint);
}

double TextPreview::markLeft() const {
    return metrics_.horizontalAdvance(lines_[mark_->line].left(mark_->character));
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
    verticalScrollBar()->setValue(static_cast<int>(mark_->line) * lineHeight() - viewport()->height() / 2);
    const double right = gutterWidth() + markLeft() + viewport()->width() / 4.0;
    if (right > viewport()->width())
        horizontalScrollBar()->setValue(static_cast<int>(right) - viewport()->width());
}

} // namespace quelm
