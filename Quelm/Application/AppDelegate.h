#pragma once

#include <QObject>

class QWidget;

namespace quelm {

/// Decides whether the application ends when its last window closes: once a window has been shown.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Never becomes false again.
    bool hasShownWindow() const { return hasShownWindow_; }

    bool shouldTerminateAfterLastWindowClosed() const { return hasShownWindow_; }

    /// Notices when that window is shown. The window may go first.
    void observe(QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool hasShownWindow_ = false;
};

} // namespace quelm
