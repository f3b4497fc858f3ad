#pragma once

#include "Quelm/Foundation/Preferences.h"

#include <QString>
#include <QTemporaryDir>

namespace quelm {

/// Preferences of a test's own, with nothing stored at first.
class TemporaryPreferences {
public:
    QString path() const { return folder_.filePath(QStringLiteral("preferences.ini")); }

private:
    QTemporaryDir folder_;
    Preferences::FileOverride override_{path()};
};

} // namespace quelm
