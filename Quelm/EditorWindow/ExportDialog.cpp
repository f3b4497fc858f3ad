#include "Quelm/EditorWindow/ExportDialog.h"

#include "Quelm/Documents/JSONDocument.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

namespace quelm {

namespace {

struct ExportDialog {
    Q_DECLARE_TR_FUNCTIONS(quelm::ExportDialog)
};

} // namespace

QFileDialog* makeExportDialog(const JSONDocument& document, QWidget& window) {
    auto* dialog = new QFileDialog(&window, ExportDialog::tr("Exportar"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(ExportDialog::tr("Archivos JSON (%1)").arg(JSONDocument::fileNamePattern()) +
                          QStringLiteral(";;") + ExportDialog::tr("Todos los archivos (*)"));
    dialog->setDefaultSuffix(QStringLiteral("json"));
    dialog->setLabelText(QFileDialog::Accept, ExportDialog::tr("Exportar"));
    if (const auto& location = document.configuration().fileLocation())
        dialog->setDirectory(QFileInfo(*location).absolutePath());
    dialog->selectFile(document.baseName() + QStringLiteral(".json"));
    return dialog;
}

} // namespace quelm
