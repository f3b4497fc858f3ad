#pragma once

#include <QDialog>
#include <QString>

#include <cstdint>

class QLineEdit;

namespace quelm {

/// Asks for the number of a line of the text.
class GoToLineDialog : public QDialog {
    Q_OBJECT

public:
    /// Begins with that input, selected.
    GoToLineDialog(const QString& input, QWidget* parent);

    QString input() const;

    /// The line, from 1, that an input means: a whole number in digits with an optional sign and no blanks; what is
    /// none, or beyond 64 bits, or below 1, is line 1.
    static std::int64_t line(const QString& input);

private:
    QLineEdit* field_;
};

} // namespace quelm
