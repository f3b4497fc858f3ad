#pragma once

#include "Quelm/Foundation/SemanticColors.h"

#include <QString>
#include <QWidget>

class QLabel;

namespace quelm {

/// A strip across the window with a symbol and a message that may take several lines. The text can be selected.
class MessageBar : public QWidget {
    Q_OBJECT

public:
    /// The symbol is painted in the colour of the role, and the strip is tinted with it.
    MessageBar(const QString& symbol, ColorRole role, QWidget* parent = nullptr);

    QString text() const;
    void setText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
    ColorRole role_;
    QLabel* label_;
};

} // namespace quelm
