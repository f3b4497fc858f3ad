#pragma once

namespace quelm {

class DocumentController;
class EditorView;

/// Gives a window all of its menus. The controller must outlive the window.
void addWindowMenus(EditorView& window, DocumentController& controller);

} // namespace quelm
