#include "Quelm/Application/FileDialogs.h"

#include "Quelm/Documents/JSONDocument.h"

#include <QCoreApplication>
#include <QFileDialog>

namespace quelm {

namespace {

struct FileDialogs {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileDialogs)
};

QFileDialog* makeDialog(QWidget& window, const QString& title) {
    auto* dialog = new QFileDialog(&window, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilters({FileDialogs::tr("Archivos JSON (%1)").arg(JSONDocument::fileNamePattern()),
                            FileDialogs::tr("Todos los archivos (*)")});
    return dialog;
}

} // namespace

QFileDialog* makeOpenDialog(QWidget& window) {
    QFileDialog* dialog = makeDialog(window, FileDialogs::tr("Abrir"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    return dialog;
}

QFileDialog* makeSaveDialog(QWidget& window) {
    QFileDialog* dialog = makeDialog(window, FileDialogs::tr("Guardar como"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("json"));
    return dialog;
}

} // namespace quelm
