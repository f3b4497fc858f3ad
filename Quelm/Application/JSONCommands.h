#pragma once

class QMenu;

namespace quelm {

class EditorView;

/// Adds the menu "JSON" to the window: what can be done to the node that is selected in its tree, and to its rows. The
/// items are there for the tree only; in a tree, one that does not apply to the selection does nothing.
QMenu& addJSONCommands(EditorView& window);

} // namespace quelm
