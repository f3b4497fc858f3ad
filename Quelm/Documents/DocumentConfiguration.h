#pragma once

#include "Quelm/Documents/FileState.h"

#include <QObject>
#include <QString>

#include <optional>

namespace quelm {

/// What a document knows of its place: whoever opens and saves documents keeps it true, the document and its window
/// read it. For the main thread.
class DocumentConfiguration : public QObject {
    Q_OBJECT

public:
    DocumentConfiguration() = default;
    explicit DocumentConfiguration(QString fileLocation) : fileLocation_(std::move(fileLocation)) {}

    /// The path of the document's file; absent until it has one.
    const std::optional<QString>& fileLocation() const { return fileLocation_; }
    void setFileLocation(QString fileLocation);

    /// What the file held when the document was last read from it or written to it; absent without a file. Announces
    /// nothing.
    const std::optional<FileState>& fileState() const { return fileState_; }
    void setFileState(std::optional<FileState> state) { fileState_ = state; }

    /// The name of the file without its folder and last extension, or "Sin título".
    QString baseName() const;

    /// The name of the file without its folder, or "Sin título".
    QString displayName() const;

Q_SIGNALS:
    void fileLocationChanged();

private:
    std::optional<QString> fileLocation_;
    std::optional<FileState> fileState_;
};

} // namespace quelm
