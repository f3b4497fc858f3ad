#pragma once

#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

namespace quelm {

/// What becomes of a document's changes when its file has got others.
struct OutsideChangeAnswers {
    std::function<void()> reload;
    std::function<void()> keep;
    std::function<void()> saveAs;
    /// Nothing is decided.
    std::function<void()> leave;
};

/// Why it is asked.
enum class OutsideChangeOccasion : unsigned char {
    /// The change was noticed.
    noticed,
    /// The document was about to be saved over it.
    saving,
};

/// Asks which of the two is to be kept and returns at once; the box deletes itself when it is answered. It belongs to
/// the window and blocks no other. Return and Escape decide nothing: the box may appear under somebody's typing.
QMessageBox* askAboutOutsideChange(QWidget& window, const QString& name, OutsideChangeOccasion occasion,
                                   OutsideChangeAnswers answers);

} // namespace quelm
