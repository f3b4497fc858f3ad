#pragma once

#include <QMessageBox>
#include <QString>

#include <functional>
#include <vector>

namespace quelm {

/// A button of a question and what follows from it.
struct Answer {
    QString title;
    QMessageBox::ButtonRole role;
    std::function<void()> act;
};

/// Asks and returns at once; the box deletes itself when it is answered. It belongs to the window and blocks no other.
/// The last answer, of which there must be one, is also given by Escape and by closing the box. Return gives the first
/// that accepts, or else the last: never one that destroys.
QMessageBox* ask(QWidget& window, const QString& question, std::vector<Answer> answers);

/// The same with a paragraph of details below the question.
QMessageBox* ask(QWidget& window, const QString& question, const QString& details, std::vector<Answer> answers);

} // namespace quelm
