#pragma once

#include <QWidget>

namespace quelm {

/// What a window says while its document is read.
class OpeningPage : public QWidget {
    Q_OBJECT

public:
    explicit OpeningPage(QWidget* parent = nullptr);
};

} // namespace quelm
