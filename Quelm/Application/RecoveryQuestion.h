#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QMessageBox;
class QWidget;

namespace quelm {

/// What follows from the answers to whether unsaved changes are to be recovered.
struct RecoveryAnswers {
    std::function<void()> recover;
    std::function<void()> discard;
    /// Also by Escape: asked again at the next start.
    std::function<void()> leave;
};

/// Asks, after the program came to an unexpected end, whether the changes of the documents of those names are to be
/// recovered, and returns at once. The box belongs to the window and deletes itself when it is answered.
QMessageBox* askBeforeRecovering(QWidget& window, const QStringList& names, RecoveryAnswers answers);

} // namespace quelm
