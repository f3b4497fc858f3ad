#include "Quelm/Application/FileDropping.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace quelm {

FileDropping::FileDropping(QWidget& window, std::function<void(const QStringList& paths)> open)
    : QObject(&window), open_(std::move(open)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

QStringList FileDropping::filesOf(const QMimeData& data) {
    QStringList paths;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile())
            paths += url.toLocalFile();
    return paths;
}

bool FileDropping::eventFilter(QObject* watched, QEvent* event) {
    const bool isDrag = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    if (!isDrag && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto& drag = static_cast<QDropEvent&>(*event);
    const QStringList paths = filesOf(*drag.mimeData());
    // The files stay where they are, whatever the other program would like best.
    const bool isWelcome = !paths.isEmpty() && drag.possibleActions().testFlag(Qt::CopyAction);
    drag.setAccepted(isWelcome);
    if (isWelcome)
        drag.setDropAction(Qt::CopyAction);
    if (isWelcome && !isDrag)
        QMetaObject::invokeMethod(this, [this, paths] { open_(paths); }, Qt::QueuedConnection);
    return true;
}

} // namespace quelm
