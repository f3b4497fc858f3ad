#pragma once

#include <QBasicTimer>
#include <QProgressBar>

namespace quelm {

/// A small ring that turns while it can be seen: something is under way, and nobody knows for how long.
class WorkIndicator : public QProgressBar {
    Q_OBJECT

public:
    explicit WorkIndicator(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QBasicTimer timer_;
    int step_ = 0;
};

} // namespace quelm
