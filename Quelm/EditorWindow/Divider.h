#pragma once

#include <QWidget>

namespace quelm {

/// A line of one logical pixel across a window, between two of its parts.
class Divider : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quelm
