#pragma once

class QMainWindow;
class QMenu;

namespace quelm {

class TreeEditor;
class UndoManager;

/// Gives a window its menu "Edición". Its commands act on the text that has the focus in the window. Without such a
/// text they act on the selected node, while the tree is shown, and undo and redo on the window's steps. What would
/// change a text or a tree is disabled while that is read-only. Manager and tree, which may be null, are held weakly.
QMenu& addEditMenu(QMainWindow& window, UndoManager& windowSteps, TreeEditor* tree);

} // namespace quelm
