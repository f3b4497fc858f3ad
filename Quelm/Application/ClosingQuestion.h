#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QMessageBox;
class QWidget;

namespace quelm {

/// What becomes of changes when their window is to be closed.
struct ClosingAnswers {
    std::function<void()> save;
    std::function<void()> discard;
    std::function<void()> cancel;
};

/// Asks whether the changes of a document of that name are to be saved and returns at once; the box deletes itself when
/// it is answered. It belongs to the window and blocks no other.
QMessageBox* askBeforeClosing(QWidget& window, const QString& name, ClosingAnswers answers);

/// Asks likewise about several documents at once when all windows are to be closed.
QMessageBox* askBeforeQuitting(QWidget& window, const QStringList& names, ClosingAnswers answers);

} // namespace quelm
