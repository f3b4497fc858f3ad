#pragma once

#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

namespace quelm {

/// Asks whether the changes of a document of that name are to be given up for what its file holds, and returns at once.
/// Nothing follows from a refusal. The box belongs to the window and deletes itself when it is answered.
QMessageBox* askBeforeReverting(QWidget& window, const QString& name, std::function<void()> revert);

} // namespace quelm
