#include "Quelm/Application/FileDialogs.h"

#include "Quelm/Documents/DocumentConfiguration.h"
#include "Quelm/EditorWindow/JSONFileDialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

namespace quelm {

namespace {

struct FileDialogs {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileDialogs)
};

QString existingFolder(QString folder) {
    while (!QFileInfo(folder).isDir() && !QDir(folder).isRoot())
        folder = QFileInfo(folder).path();
    return folder;
}

/// Lets the one name without an extension stay as it is.
void keepName(QFileDialog& dialog, const QString& name) {
    const auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (!field)
        return;
    const QString suffix = dialog.defaultSuffix();
    QObject::connect(field, &QLineEdit::textChanged, &dialog, [&dialog, name, suffix](const QString& text) {
        dialog.setDefaultSuffix(text == name ? QString() : suffix);
    });
}

} // namespace

QFileDialog* makeOpenDialog(QWidget& window) {
    QFileDialog* dialog = makeJSONFileDialog(window, FileDialogs::tr("Abrir"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    return dialog;
}

QFileDialog* makeSaveDialog(QWidget& window, const DocumentConfiguration& document) {
    QFileDialog* dialog = makeJSONSaveDialog(window, FileDialogs::tr("Guardar como"));
    const auto& location = document.fileLocation();
    if (!location) {
        dialog->selectFile(document.baseName() + QStringLiteral(".json"));
        return dialog;
    }
    const QFileInfo file(*location);
    dialog->setDirectory(existingFolder(file.absolutePath()));
    if (file.suffix().isEmpty())
        keepName(*dialog, file.fileName());
    dialog->selectFile(file.fileName());
    return dialog;
}

} // namespace quelm
