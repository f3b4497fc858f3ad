#pragma once

namespace quelm {

class DocumentController;
class EditorView;

/// Gives a window its menu "Ventana": what becomes of the window, and all windows of the controller, which must outlive
/// it.
void addWindowMenu(EditorView& window, DocumentController& controller);

} // namespace quelm
