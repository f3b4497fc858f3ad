#pragma once

#include <QBasicTimer>
#include <QProgressBar>

#include <memory>

namespace quelm {

class WorkProgress;

/// A small ring: something is under way. It fills up as far as that is known, and turns while it is not.
class WorkIndicator : public QProgressBar {
    Q_OBJECT

public:
    explicit WorkIndicator(QWidget* parent = nullptr);

    /// What it fills up with from now on; null for what nobody knows the length of, as at first.
    void follow(std::shared_ptr<const WorkProgress> progress);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void readProgress();

    std::shared_ptr<const WorkProgress> progress_;
    QBasicTimer timer_;
    int step_ = 0;
};

} // namespace quelm
