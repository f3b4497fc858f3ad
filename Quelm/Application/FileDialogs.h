#pragma once

class QFileDialog;
class QWidget;

namespace quelm {

class DocumentConfiguration;

/// Asks for JSON files to open, in the folder that is the current one until another is set. The dialog belongs to the
/// window and deletes itself when it is done; whoever makes it opens it.
QFileDialog* makeOpenDialog(QWidget& window);

/// Asks likewise for the file to save a document to, beside the one that it has; when that folder is gone, in what is
/// left of its path. The name is at first the document's, with whatever extension it has; another name gets that of
/// JSON files if it has none.
QFileDialog* makeSaveDialog(QWidget& window, const DocumentConfiguration& document);

} // namespace quelm
