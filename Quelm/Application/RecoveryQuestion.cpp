#include "Quelm/Application/RecoveryQuestion.h"

#include "Quelm/Application/Question.h"
#include "Quelm/Application/QuotedNames.h"
#include "Quelm/EditorWindow/Alert.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct RecoveryQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::RecoveryQuestion)
};

} // namespace

QMessageBox* askBeforeRecovering(QWidget& window, const QStringList& names, RecoveryAnswers answers) {
    const QString question = RecoveryQuestion::tr("Quelm se cerró inesperadamente. ¿Quieres recuperar los cambios sin "
                                                  "guardar de %1?")
                                 .arg(quotedNames(names));
    QMessageBox* box =
        ask(window, question,
            {{RecoveryQuestion::tr("Recuperar"), QMessageBox::AcceptRole, std::move(answers.recover)},
             {RecoveryQuestion::tr("Descartar"), QMessageBox::DestructiveRole, std::move(answers.discard)},
             {RecoveryQuestion::tr("Más tarde"), QMessageBox::RejectRole, std::move(answers.leave)}});
    showDetails(*box, RecoveryQuestion::tr("Se abren como documentos sin guardar: ningún archivo cambia hasta que lo "
                                           "guardes."));
    return box;
}

} // namespace quelm
