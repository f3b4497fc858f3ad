#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/Foundation/VisibleText.h"
#include "TextCore/Check.h"

#include <QFileInfo>

#include <utility>

namespace quelm {

void EditorModel::setExport(std::shared_ptr<const ExportDocument> exportDocument) {
    if (exportDocument_ == exportDocument)
        return;
    exportDocument_ = std::move(exportDocument);
    Q_EMIT exportChanged();
}

void EditorModel::prepareExport(const JSONStyle& style) {
    Q_EMIT willReadDocument();
    JSONContent content = document_->snapshot();
    const JSONParseError* error = validator_.state().error();
    if (document_->mode() == EditorMode::text && error)
        setErrorMessage(tr("No se puede exportar un JSON inválido.\n") + ConversionError(*error).description());
    else
        setExport(std::make_shared<const ExportDocument>(std::move(content), style));
}

void EditorModel::writeExport(std::shared_ptr<const ExportDocument> exportDocument, const QString& path) {
    require(exportDocument != nullptr, "an export that is written is there");
    waitingExports_.push_back({std::move(exportDocument), path});
    if (!exporting_.task.isRunning())
        startNextExport();
}

void EditorModel::startNextExport() {
    Export next = std::move(waitingExports_.front());
    waitingExports_.pop_front();
    isExportCancelled_ = false;
    begin(exporting_);
    exporting_.task = startInBackground(
        this,
        [document = std::move(next.document), path = next.path, folder = backupFolder_](const std::stop_token& stop) {
            return document->writeFile(path, {.backupFolder = folder, .stop = stop});
        },
        [this, path = next.path](const std::expected<void, ExportDocument::Failure>& result) {
            finishExport(path, result);
        });
    Q_EMIT exportingStarted();
}

void EditorModel::finishExport(const QString& path, const std::expected<void, ExportDocument::Failure>& result) {
    if (!result)
        reportExport(path, result.error());
    end(exporting_);
    Q_EMIT exportingFinished(result.has_value());
    if (!waitingExports_.empty() && !exporting_.task.isRunning())
        startNextExport();
}

void EditorModel::cancelExports() {
    waitingExports_.clear();
    if (!exporting_.task.isRunning())
        return;
    isExportCancelled_ = true;
    exporting_.task.requestStop();
}

void EditorModel::reportExport(const QString& path, const ExportDocument::Failure& failure) {
    if (isExportCancelled_)
        return;
    if (const auto* error = std::get_if<FileError>(&failure))
        setErrorMessage(tr("No se pudo guardar «%1».\n").arg(visibleCharacters(QFileInfo(path).fileName())) +
                        error->message);
    else if (const auto& conversion = std::get<ConversionError>(failure); !conversion.isCancellation())
        setErrorMessage(conversion.description());
}

} // namespace quelm
