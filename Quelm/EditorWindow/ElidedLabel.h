#pragma once

#include "Quelm/Foundation/SemanticColors.h"

#include <QLabel>

namespace quelm {

/// A text in one line, cut with "…" where there is no room for all of it; a tooltip then tells it. The text must be fit
/// to be painted in one line, and not be long, since it is measured as a whole.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode elideMode, QWidget* parent = nullptr);

    void setColorRole(ColorRole role);

    /// The text and what the tooltip says of it (`toolTipText`) when it is cut.
    void setText(const QString& text, const QString& wholeText);

    bool isElided() const { return width() < naturalWidth_; }
    /// What is painted of the text.
    QString shownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    bool event(QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    using QLabel::setText;

    const Qt::TextElideMode elideMode_;
    ColorRole role_ = ColorRole::secondaryText;
    int naturalWidth_ = 0;
    QString wholeText_;
};

} // namespace quelm
