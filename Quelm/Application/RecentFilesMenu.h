#pragma once

class QMenu;

namespace quelm {

class DocumentController;

/// Adds a menu of the files that were opened or saved last to a menu. Both are brought up to date when they are shown.
/// The controller, which opens the files, must outlive the menu.
void addRecentFilesMenu(QMenu& menu, DocumentController& controller);

} // namespace quelm
