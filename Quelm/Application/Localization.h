#pragma once

class QApplication;

namespace quelm {

/// Makes Qt's own dialogs, buttons and menus speak Spanish, whatever the system's language. Numbers stay the system's.
void installTranslations(QApplication& application);

} // namespace quelm
