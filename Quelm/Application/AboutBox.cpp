#include "Quelm/Application/AboutBox.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace quelm {

namespace {

struct AboutBox {
    Q_DECLARE_TR_FUNCTIONS(quelm::AboutBox)
};

} // namespace

QMessageBox* showAboutBox(QWidget& window) {
    auto* box = new QMessageBox(QMessageBox::NoIcon, AboutBox::tr("Acerca de Quelm"),
                                QStringLiteral("Quelm ") + QLatin1String(QUELM_VERSION), QMessageBox::Ok, &window);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(
        AboutBox::tr("Un editor de JSON que muestra cada archivo como árbol o como texto, también los muy grandes."));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    return box;
}

} // namespace quelm
