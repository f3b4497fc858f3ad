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

/// Of what there is to recover; at least one in all.
struct RecoverableNames {
    /// Documents with unsaved changes.
    QStringList changed;
    /// Files that were being written, and may be incomplete now.
    QStringList halfSaved;
};

/// Asks, after the program came to an unexpected end, whether those documents are to be recovered, and returns at once.
/// The box belongs to the window and deletes itself when it is answered.
QMessageBox* askBeforeRecovering(QWidget& window, const RecoverableNames& names, RecoveryAnswers answers);

/// What follows from the answers about changes that cannot be recovered for now.
struct PostponementAnswers {
    /// They are not offered again.
    std::function<void()> keepAside;
    /// Also by Escape: tried again at the next start.
    std::function<void()> leave;
};

/// Says that the files of those names are not there for now, or cannot be read, and asks whether their unsaved changes
/// are to be tried again.
QMessageBox* askAboutUnreachable(QWidget& window, const QStringList& names, PostponementAnswers answers);

} // namespace quelm
