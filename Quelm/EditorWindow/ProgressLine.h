#pragma once

#include <QBasicTimer>
#include <QProgressBar>

#include <memory>

namespace quelm {

class WorkProgress;

/// A thin line that fills up as a piece of work goes on. Where nobody knows how far it is, and when only an unknown
/// rest is left, a piece of it moves along.
class ProgressLine : public QProgressBar {
    Q_OBJECT

public:
    explicit ProgressLine(std::shared_ptr<const WorkProgress> progress, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void readProgress();

    const std::shared_ptr<const WorkProgress> progress_;
    QBasicTimer timer_;
    int step_ = 0;
};

} // namespace quelm
