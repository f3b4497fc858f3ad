#pragma once

#include <QString>

class QMessageBox;
class QWidget;

namespace quelm {

/// Shows a warning with one button and returns at once; the box deletes itself when it is dismissed. With a parent it
/// belongs to that window and blocks no other.
QMessageBox* showAlert(QWidget* parent, const QString& message, const QString& details);

/// Explains a box's text, which becomes its heading, in a paragraph below it.
void showDetails(QMessageBox& box, const QString& details);

/// Gives a box the symbol of warnings in place of the style's own.
void useWarningSymbol(QMessageBox& box);

} // namespace quelm
