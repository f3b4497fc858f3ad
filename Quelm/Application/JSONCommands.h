#pragma once

class QMenu;

namespace quelm {

class EditorView;

/// Adds the menu "JSON" to the window: the two editors, what can be done to the whole document, to the node that is
/// selected in its tree and to its rows, and where to go in its text. An item is enabled while it applies.
QMenu& addJSONCommands(EditorView& window);

} // namespace quelm
