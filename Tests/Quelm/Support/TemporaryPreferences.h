#pragma once

#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/Foundation/Preferences.h"

#include <QString>
#include <QTemporaryDir>
#include <QThreadPool>

namespace quelm {

/// Preferences of a test's own, with nothing stored at first.
class TemporaryPreferences {
public:
    /// What is still to be stored needs the folder.
    ~TemporaryPreferences() { backgroundThreads().waitForDone(); }

    QString path() const { return folder_.filePath(QStringLiteral("preferences.ini")); }

private:
    QTemporaryDir folder_;
    Preferences::FileOverride override_{path()};
};

} // namespace quelm
