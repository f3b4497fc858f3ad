#include "Quelm/EditorWindow/ExportDialog.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/EditorWindow/JSONFileDialog.h"

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
    const QString title = ExportDialog::tr("Exportar");
    QFileDialog* dialog = makeJSONSaveDialog(window, title);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setLabelText(QFileDialog::Accept, title);
    if (const auto& location = document.configuration().fileLocation())
        dialog->setDirectory(QFileInfo(*location).absolutePath());
    dialog->selectFile(document.baseName() + QStringLiteral(".json"));
    return dialog;
}

} // namespace quelm
