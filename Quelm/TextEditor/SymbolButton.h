#pragma once

#include <QString>
#include <QToolButton>

namespace quelm {

/// A square button with a symbol, for a bar: flat until the pointer is over it, and tinted while it is checked.
class SymbolButton : public QToolButton {
    Q_OBJECT

public:
    /// `name` says what it does, for a tooltip and assistive technology; `keys`, which may be empty, follow in the
    /// tooltip.
    SymbolButton(const QString& symbol, const QString& name, const QString& keys, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
};

} // namespace quelm
