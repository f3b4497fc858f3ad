#include "Quelm/Application/OutsideChangeQuestion.h"

#include "Quelm/Application/Question.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct OutsideChangeQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::OutsideChangeQuestion)
};

QString details(OutsideChangeOccasion occasion) {
    return occasion == OutsideChangeOccasion::saving
               ? OutsideChangeQuestion::tr("Otro programa lo ha modificado y todavía no se ha guardado nada. Si "
                                           "conservas lo tuyo, se guardará en lugar de esos cambios. Si recargas el "
                                           "archivo, perderás los cambios que no has guardado.")
               : OutsideChangeQuestion::tr("Otro programa lo ha modificado y aquí hay cambios sin guardar. Si recargas "
                                           "el archivo, los perderás. Si los conservas, el archivo se queda como está "
                                           "hasta que guardes.");
}

QString leaveTitle(OutsideChangeOccasion occasion) {
    return occasion == OutsideChangeOccasion::saving ? OutsideChangeQuestion::tr("Cancelar")
                                                     : OutsideChangeQuestion::tr("Más tarde");
}

} // namespace

QMessageBox* askAboutOutsideChange(QWidget& window, const QString& name, OutsideChangeOccasion occasion,
                                   OutsideChangeAnswers answers) {
    // By these roles what keeps the changes stands in the middle on most desktops.
    return ask(window, OutsideChangeQuestion::tr("\"%1\" ha cambiado en el disco.").arg(name), details(occasion),
               {{OutsideChangeQuestion::tr("Recargar"), QMessageBox::DestructiveRole, std::move(answers.reload)},
                {OutsideChangeQuestion::tr("Guardar como…"), QMessageBox::ActionRole, std::move(answers.saveAs)},
                {OutsideChangeQuestion::tr("Conservar lo mío"), QMessageBox::NoRole, std::move(answers.keep)},
                {leaveTitle(occasion), QMessageBox::RejectRole, std::move(answers.leave)}});
}

} // namespace quelm
