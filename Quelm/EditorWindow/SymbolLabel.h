#pragma once

#include "Quelm/Foundation/SemanticColors.h"

#include <QLabel>
#include <QString>

namespace quelm {

/// A symbol, of the size that goes with the caption font.
class SymbolLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// `name` is what it means, for assistive technology and as its tooltip.
    void setSymbol(const QString& symbol, ColorRole role, const QString& name);

    const QString& symbol() const { return symbol_; }
    ColorRole colorRole() const { return role_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
    ColorRole role_ = ColorRole::secondaryText;
};

} // namespace quelm
