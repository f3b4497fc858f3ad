#pragma once

#include <QToolButton>

namespace quelm {

/// A button of a toolbar: a symbol and a title, flat until the pointer is over it. With a menu it opens that below
/// itself, without an event loop of its own, and says so by a chevron. It takes the focus by the keyboard only.
class ToolBarButton : public QToolButton {
    Q_OBJECT

public:
    ToolBarButton(const QString& title, const QString& symbol, const QString& toolTip, QWidget* parent = nullptr);

    /// In place of `setMenu`; the menu becomes a part of the button.
    void setDropDownMenu(QMenu* menu);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void openMenu();
    int labelWidth() const;

    const QString symbol_;
};

} // namespace quelm
