#include "Quelm/Documents/DocumentConfiguration.h"

#include <QFileInfo>

namespace quelm {

void DocumentConfiguration::setFileLocation(QString fileLocation) {
    if (fileLocation_ == fileLocation)
        return;
    fileLocation_ = std::move(fileLocation);
    Q_EMIT fileLocationChanged();
}

QString DocumentConfiguration::baseName() const {
    if (!fileLocation_)
        return tr("Sin título");
    const QFileInfo file(*fileLocation_);
    // A name such as ".json" is all name and no extension.
    const QString name = file.completeBaseName();
    return name.isEmpty() ? file.fileName() : name;
}

QString DocumentConfiguration::displayName() const {
    return fileLocation_ ? QFileInfo(*fileLocation_).fileName() : tr("Sin título");
}

} // namespace quelm
