#pragma once

class QMainWindow;
class QMenu;

namespace quelm {

class UndoManager;

/// Gives a window its menu "Edición". Its commands act on the text that has the focus in the window, and undo and redo
/// on the window's steps otherwise. The manager is held weakly.
QMenu& addEditMenu(QMainWindow& window, UndoManager& windowSteps);

} // namespace quelm
