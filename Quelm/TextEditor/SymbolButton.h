#pragma once

#include <QString>
#include <QToolButton>

namespace quelm {

/// A square button with a symbol, for a bar: flat until the pointer is over it, and tinted while it is checked.
class SymbolButton : public QToolButton {
    Q_OBJECT

public:
    SymbolButton(const QString& symbol, const QString& name, const QString& keys, QWidget* parent = nullptr);

    void setSymbol(const QString& symbol);
    /// `name` says what it does, for a tooltip and assistive technology; `keys`, which may be empty, follow in the
    /// tooltip.
    void setName(const QString& name, const QString& keys);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
};

} // namespace quelm
