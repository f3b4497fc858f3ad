#pragma once

class QFileDialog;
class QWidget;

namespace quelm {

class JSONDocument;

/// Asks for the file that a copy of the document is to be written to, first in the document's folder and under its
/// name. It belongs to the window, blocks no other, and deletes itself when it is done; it is not shown yet.
QFileDialog* makeExportDialog(const JSONDocument& document, QWidget& window);

} // namespace quelm
