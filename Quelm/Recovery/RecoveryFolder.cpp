#include "Quelm/Recovery/RecoveryFolder.h"

#include <QDir>

namespace quelm {

QString recoveryFolder() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // One that is not absolute is to be ignored (XDG Base Directory Specification).
    if (!QDir::isAbsolutePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir::cleanPath(state) + QStringLiteral("/quelm/recovery");
}

} // namespace quelm
