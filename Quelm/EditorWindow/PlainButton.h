#pragma once

#include <QPushButton>

namespace quelm {

/// A button that is a caption in the accent's colour, underlined while the pointer is over it. It takes the focus by
/// the keyboard only, so that a click leaves that of the editor alone.
class PlainButton : public QPushButton {
    Q_OBJECT

public:
    explicit PlainButton(const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quelm
