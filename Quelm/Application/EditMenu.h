#pragma once

class QMainWindow;
class QMenu;

namespace quelm {

class TreeEditor;
class UndoManager;

/// Gives a window its menu "Edición". Its commands act on the text that has the focus in the window. Without such a
/// text they act on the selected node, while the tree is shown, and undo and redo on the window's steps. Manager and
/// tree, which may be null, are held weakly.
QMenu& addEditMenu(QMainWindow& window, UndoManager& windowSteps, TreeEditor* tree);

} // namespace quelm
