#include "Quelm/Application/RevertQuestion.h"

#include "Quelm/Application/Question.h"
#include "Quelm/Foundation/VisibleText.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct RevertQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::RevertQuestion)
};

} // namespace

QMessageBox* askBeforeReverting(QWidget& window, const QString& name, std::function<void()> revert) {
    return ask(window, RevertQuestion::tr("¿Quieres descartar los cambios de \"%1\"?").arg(visibleCharacters(name)),
               {{RevertQuestion::tr("Descartar"), QMessageBox::DestructiveRole, std::move(revert)},
                {RevertQuestion::tr("Cancelar"), QMessageBox::RejectRole, {}}});
}

} // namespace quelm
