#pragma once

#include "TextCore/SharedText.h"

#include <QAbstractScrollArea>
#include <QFontMetricsF>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace quelm {

/// The beginning of a text, to be looked at: its first lines, each as far as a window can show. It reads a bounded
/// number of bytes whatever the size of the text and of its lines.
class TextPreview : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit TextPreview(const SharedText& text, QWidget* parent = nullptr);

    const QStringList& lines() const { return lines_; }

    /// Whether the text has more than `lines()` say.
    bool isPartial() const { return isPartial_; }

    /// Tints a line, counted from 1, and scrolls to it once, if it is among those shown.
    void markLine(std::int64_t line);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void updateExtents();
    void showMark();
    int lineHeight() const;
    double gutterWidth() const;

    QFont font_;
    QFontMetricsF metrics_;
    QStringList lines_;
    bool isPartial_ = false;
    std::optional<std::int64_t> markedLine_;
    bool isMarkToBeShown_ = false;
};

} // namespace quelm
