#pragma once

class QMenu;

namespace quelm {

class EditorView;

/// Adds searching and replacing in the text of the window to its menu "Edición". They are there for the text editor
/// only.
void addFindItems(QMenu& menu, EditorView& window);

} // namespace quelm
