#include "Quelm/EditorWindow/Alert.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/EditorWindow/ExportDialog.h"
#include "Quelm/EditorWindow/GoToLineDialog.h"

#include <QFileDialog>
#include <QMessageBox>

namespace quelm {

void EditorView::showErrorMessage() {
    const std::optional<QString>& message = model_.errorMessage();
    if (!message) {
        if (alert_)
            alert_->close();
        return;
    }
    if (alert_) {
        alert_->setInformativeText(*message);
        return;
    }
    alert_ = showAlert(this, tr("No se pudo completar"), *message);
    connect(alert_, &QDialog::finished, this, [this] {
        alert_ = nullptr;
        model_.setErrorMessage(std::nullopt);
    });
}

void EditorView::showGoToLine() {
    if (!model_.isGoToLinePresented()) {
        if (goToLineDialog_)
            goToLineDialog_->close();
        return;
    }
    if (goToLineDialog_)
        return;
    auto* dialog = new GoToLineDialog(lineInput_, this);
    goToLineDialog_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::finished, this, [this, dialog](int result) {
        goToLineDialog_ = nullptr;
        lineInput_ = dialog->input();
        if (result == QDialog::Accepted)
            model_.setGoTo(TextLocation(GoToLineDialog::line(lineInput_), 1));
        model_.setGoToLinePresented(false);
    });
    dialog->open();
}

void EditorView::showExport() {
    if (!model_.export_()) {
        if (exportDialog_)
            exportDialog_->close();
        return;
    }
    if (exportDialog_)
        return;
    QFileDialog* dialog = makeExportDialog(document(), *this);
    exportDialog_ = dialog;
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& path) { model_.writeExport(model_.export_(), path); });
    connect(dialog, &QDialog::finished, this, [this] {
        exportDialog_ = nullptr;
        model_.setExport(nullptr);
    });
    dialog->open();
}

} // namespace quelm
