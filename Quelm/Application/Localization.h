#pragma once

class QApplication;

namespace quelm {

/// Makes Qt's own dialogs, buttons and menus speak Spanish, whatever the system's language. Numbers and dates are
/// written in the way of a system that speaks Spanish, else in that of Spain.
void installTranslations(QApplication& application);

} // namespace quelm
