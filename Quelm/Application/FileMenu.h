#pragma once

namespace quelm {

class DocumentController;
class EditorView;

/// Gives a window its menu "Archivo". The controller must outlive the window.
void addFileMenu(EditorView& window, DocumentController& controller);

} // namespace quelm
