#include "Quelm/Application/ClosingQuestion.h"

#include "Quelm/Application/Question.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct ClosingQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::ClosingQuestion)
};

} // namespace

QMessageBox* askBeforeClosing(QWidget& window, const QString& name, ClosingAnswers answers) {
    return ask(window, ClosingQuestion::tr("¿Quieres guardar los cambios de \"%1\"?").arg(name),
               {{ClosingQuestion::tr("Guardar"), QMessageBox::AcceptRole, std::move(answers.save)},
                {ClosingQuestion::tr("No guardar"), QMessageBox::DestructiveRole, std::move(answers.discard)},
                {ClosingQuestion::tr("Cancelar"), QMessageBox::RejectRole, std::move(answers.cancel)}});
}

} // namespace quelm
