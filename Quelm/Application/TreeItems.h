#pragma once

class QMenu;

namespace quelm {

class EditorView;

/// Adds to the menu "Edición" of the window what there is for its tree only: renaming, for values whose key is not what
/// is edited first.
void addTreeItems(QMenu& menu, EditorView& window);

} // namespace quelm
