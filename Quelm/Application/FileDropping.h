#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class QMimeData;
class QWidget;

namespace quelm {

/// Lets files be dropped on any part of a window that has no use for them itself. A part of the window, which it is
/// made for.
class FileDropping : public QObject {
    Q_OBJECT

public:
    /// Calls `open` with the paths of local files, in their order, once the drop is over: the program that they come
    /// from waits for that.
    FileDropping(QWidget& window, std::function<void(const QStringList& paths)> open);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static QStringList filesOf(const QMimeData& data);

    std::function<void(const QStringList&)> open_;
};

} // namespace quelm
