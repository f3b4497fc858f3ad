#pragma once

#include "TextCore/SharedText.h"

#include <QAbstractScrollArea>
#include <QFontMetricsF>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <string_view>

class QPainter;

namespace quelm {

/// A part of a text, to be looked at: its first lines, or those around a place in it, each as far as a window can show.
/// It reads a bounded number of bytes whatever the size of the text and of its lines.
class TextPreview : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// A place in the text: an offset in bytes, and the line, from 1, that it is in.
    struct Place {
        std::int64_t offset;
        std::int64_t line;
    };

    /// The beginning of the text.
    explicit TextPreview(const SharedText& text, QWidget* parent = nullptr);

    /// The lines around a place, which is marked and in view at first.
    TextPreview(const SharedText& text, Place marked, QWidget* parent = nullptr);

    const QStringList& lines() const { return lines_; }

    /// Whether the text has more than `lines()` say.
    bool isPartial() const { return isPartial_; }

    /// The number of the first of `lines()` in the text.
    std::int64_t firstLineNumber() const { return firstLineNumber_; }

    /// Where the mark stands: an index into `lines()`, and one into that line.
    struct Mark {
        qsizetype line;
        qsizetype character;
    };
    const std::optional<Mark>& mark() const { return mark_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void prepare();
    void addLine(std::string_view line);
    void addMarkedLine(std::string_view before, std::string_view after);
    void addLines(std::string_view rest);
    void paintMark(QPainter& painter, const QRectF& line, double textLeft) const;
    double markLeft() const;
    void updateExtents();
    void showMark();
    int lineHeight() const;
    double gutterWidth() const;

    QFont font_;
    QFontMetricsF metrics_;
    QStringList lines_;
    bool isPartial_ = false;
    std::int64_t firstLineNumber_ = 1;
    std::optional<Mark> mark_;
    bool isMarkToBeShown_ = false;
};

} // namespace quelm
