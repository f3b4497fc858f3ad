#pragma once

#include <QObject>

#include <cstdint>

class QScrollBar;

namespace quelm {

/// One direction of scrolling with 64-bit positions, shown on a scroll bar whose own values are plain integers: content
/// may be longer than a scroll bar can count. Positions are logical pixels from the start of the content, always from 0
/// to `maximum()`. The axis takes the bar over: nobody else sets its range or value.
class ScrollAxis : public QObject {
    Q_OBJECT

public:
    /// `bar` must outlive the axis.
    explicit ScrollAxis(QScrollBar& bar, QObject* parent = nullptr);

    /// How long the content is, how much of it is visible at once (both at least 0), and how far one step goes (above
    /// 0). The position stays, as far as it still exists.
    void setExtent(std::int64_t contentLength, std::int64_t visibleLength, std::int64_t step);

    std::int64_t position() const { return position_; }
    std::int64_t maximum() const { return maximum_; }

    /// Goes to the nearest position there is.
    void setPosition(std::int64_t position);
    void scrollBy(std::int64_t distance) { setPosition(position_ + distance); }

    /// Goes as short a way as possible so that the stretch is visible, its start if it is too long.
    void reveal(std::int64_t start, std::int64_t length);

Q_SIGNALS:
    void positionChanged();

private:
    void barMoved(int value);
    void barActed(int action);
    void updateBar();
    int barValue(std::int64_t position) const;

    QScrollBar& bar_;
    std::int64_t position_ = 0;
    std::int64_t maximum_ = 0;
    std::int64_t visibleLength_ = 0;
    std::int64_t step_ = 1;
    bool isUpdatingBar_ = false;
};

} // namespace quelm
