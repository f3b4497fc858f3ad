#pragma once

#include "Quelm/TextEngine/TextRange.h"

#include <QObject>
#include <QVariantAnimation>

#include <optional>

namespace quelm {

/// A stretch of text that flashes up and fades away within a second.
class FindIndicator : public QObject {
    Q_OBJECT

public:
    explicit FindIndicator(QObject* parent = nullptr);

    void show(TextRange range);
    void hide();

    /// Absent when nothing is shown.
    std::optional<TextRange> range() const { return range_; }
    /// From 1, at first, to 0.
    double opacity() const;

Q_SIGNALS:
    void changed();

private:
    std::optional<TextRange> range_;
    QVariantAnimation fading_;
};

} // namespace quelm
