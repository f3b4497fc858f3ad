#include "Quelm/Application/FileDialogs.h"

#include "Quelm/EditorWindow/JSONFileDialog.h"

#include <QCoreApplication>
#include <QFileDialog>

namespace quelm {

namespace {

struct FileDialogs {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileDialogs)
};

} // namespace

QFileDialog* makeOpenDialog(QWidget& window) {
    QFileDialog* dialog = makeJSONFileDialog(window, FileDialogs::tr("Abrir"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    return dialog;
}

QFileDialog* makeSaveDialog(QWidget& window) {
    return makeJSONSaveDialog(window, FileDialogs::tr("Guardar como"));
}

} // namespace quelm
