#pragma once

#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;

namespace quelm {

class WorkProgress;

/// What a window says while its document is read.
class OpeningPage : public QWidget {
    Q_OBJECT

public:
    explicit OpeningPage(QWidget* parent = nullptr);

    /// From now on it says how far the reading is, and has a button to cancel it. Once.
    void showProgress(std::shared_ptr<const WorkProgress> progress);

    /// Null until there is progress to be seen.
    QPushButton* cancelButton() const { return cancelButton_; }

Q_SIGNALS:
    void cancelled();

private:
    QWidget* content_;
    QPushButton* cancelButton_ = nullptr;
};

} // namespace quelm
