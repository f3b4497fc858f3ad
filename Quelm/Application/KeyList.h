#pragma once

class QDialog;
class QMainWindow;

namespace quelm {

/// Shows the keys of the window's menus and of its editors as a list and returns at once; the dialog belongs to the
/// window, blocks nothing and deletes itself when it is closed. One that is open already comes forward.
QDialog* showKeyList(QMainWindow& window);

} // namespace quelm
