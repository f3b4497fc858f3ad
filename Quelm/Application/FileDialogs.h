#pragma once

class QFileDialog;
class QWidget;

namespace quelm {

/// Asks for JSON files to open, in the folder that is the current one until another is set. The dialog belongs to the
/// window and deletes itself when it is done; whoever makes it opens it.
QFileDialog* makeOpenDialog(QWidget& window);

/// Asks likewise for the file to save to, whose name gets the extension of JSON files if it has none.
QFileDialog* makeSaveDialog(QWidget& window);

} // namespace quelm
