#include "Quelm/Application/RecoveryQuestion.h"

#include "Quelm/Application/Question.h"
#include "Quelm/Application/QuotedNames.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct RecoveryQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::RecoveryQuestion)
};

QString questionAbout(const RecoverableNames& names) {
    if (names.halfSaved.isEmpty())
        return RecoveryQuestion::tr("Quelm se cerró inesperadamente. ¿Quieres recuperar los cambios sin guardar de %1?")
            .arg(quotedNames(names.changed));
    if (names.changed.isEmpty())
        return RecoveryQuestion::tr("Quelm se cerró inesperadamente y el guardado de %1 quedó a medias. ¿Quieres "
                                    "recuperarlo?")
            .arg(quotedNames(names.halfSaved));
    return RecoveryQuestion::tr("Quelm se cerró inesperadamente y el guardado de %1 quedó a medias. ¿Quieres "
                                "recuperarlo, y también los cambios sin guardar de %2?")
        .arg(quotedNames(names.halfSaved), quotedNames(names.changed));
}

QString detailsAbout(const RecoverableNames& names) {
    const QString details =
        RecoveryQuestion::tr("Se abren como documentos sin guardar: ningún archivo cambia hasta que lo guardes.");
    if (names.halfSaved.isEmpty())
        return details;
    return details + u'\n' +
           RecoveryQuestion::tr("Un archivo guardado a medias puede estar incompleto. Si descartas lo que contenía antes, "
                                "se aparta en la carpeta de recuperación y no se vuelve a ofrecer.");
}

} // namespace

QMessageBox* askBeforeRecovering(QWidget& window, const RecoverableNames& names, RecoveryAnswers answers) {
    return ask(window, questionAbout(names), detailsAbout(names),
               {{RecoveryQuestion::tr("Recuperar"), QMessageBox::AcceptRole, std::move(answers.recover)},
                {RecoveryQuestion::tr("Descartar"), QMessageBox::DestructiveRole, std::move(answers.discard)},
                {RecoveryQuestion::tr("Más tarde"), QMessageBox::RejectRole, std::move(answers.leave)}});
}

QMessageBox* askAboutUnreachable(QWidget& window, const QStringList& names, PostponementAnswers answers) {
    return ask(window,
               RecoveryQuestion::tr("Hay cambios sin guardar de %1, pero el archivo no está en su sitio o no se puede leer.")
                   .arg(quotedNames(names)),
               RecoveryQuestion::tr("Los cambios se conservan, y Quelm lo intentará de nuevo en el próximo inicio. Si el "
                                    "archivo ya no va a volver, se pueden apartar para que no se ofrezcan más."),
               {{RecoveryQuestion::tr("Apartar"), QMessageBox::DestructiveRole, std::move(answers.keepAside)},
                {RecoveryQuestion::tr("Más tarde"), QMessageBox::RejectRole, std::move(answers.leave)}});
}

} // namespace quelm
