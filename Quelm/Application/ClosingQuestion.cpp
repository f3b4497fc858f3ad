#include "Quelm/Application/ClosingQuestion.h"

#include "Quelm/Application/Question.h"
#include "Quelm/Application/QuotedNames.h"
#include "Quelm/EditorWindow/Alert.h"
#include "Quelm/Foundation/VisibleText.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct ClosingQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::ClosingQuestion)
};

} // namespace

QMessageBox* askBeforeClosing(QWidget& window, const QString& name, ClosingAnswers answers) {
    return ask(window, ClosingQuestion::tr("¿Quieres guardar los cambios de \"%1\"?").arg(visibleCharacters(name)),
               {{ClosingQuestion::tr("Guardar"), QMessageBox::AcceptRole, std::move(answers.save)},
                {ClosingQuestion::tr("No guardar"), QMessageBox::DestructiveRole, std::move(answers.discard)},
                {ClosingQuestion::tr("Cancelar"), QMessageBox::RejectRole, std::move(answers.cancel)}});
}

QMessageBox* askBeforeQuitting(QWidget& window, const QStringList& names, ClosingAnswers answers) {
    QMessageBox* box =
        ask(window, ClosingQuestion::tr("Hay cambios sin guardar en %1 documentos.").arg(names.size()),
            {{ClosingQuestion::tr("Guardar todo"), QMessageBox::AcceptRole, std::move(answers.save)},
             {ClosingQuestion::tr("No guardar"), QMessageBox::DestructiveRole, std::move(answers.discard)},
             {ClosingQuestion::tr("Cancelar"), QMessageBox::RejectRole, std::move(answers.cancel)}});
    showDetails(*box, ClosingQuestion::tr("¿Quieres guardar los cambios de %1?").arg(quotedNames(names)));
    return box;
}

} // namespace quelm
