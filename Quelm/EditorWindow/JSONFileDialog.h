#pragma once

class QFileDialog;
class QString;
class QWidget;

namespace quelm {

/// Asks for JSON files; the user may have all files listed. It is as large as its columns need, belongs to the window
/// and deletes itself when it is done; whoever makes it opens it.
QFileDialog* makeJSONFileDialog(QWidget& window, const QString& title);

/// Asks likewise for a file to write, whose name gets the extension of JSON files if it has none. The keyboard is the
/// window's again when it is done.
QFileDialog* makeJSONSaveDialog(QWidget& window, const QString& title);

} // namespace quelm
