#include "Quelm/Application/Alert.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace quelm {

QMessageBox* showAlert(QWidget* parent, const QString& message, const QString& details) {
    auto* box = new QMessageBox(QMessageBox::Warning, QGuiApplication::applicationDisplayName(), message,
                                QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(details);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (parent)
        box->open();
    else
        box->show();
    return box;
}

} // namespace quelm
