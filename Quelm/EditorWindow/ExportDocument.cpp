#include "Quelm/EditorWindow/ExportDocument.h"

#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/FileFailureText.h"
#include "Quelm/Documents/JSONDocument.h"

#include <QFile>

namespace quelm {

const QStringList& ExportDocument::contentTypes() {
    return JSONDocument::writableContentTypes();
}

std::expected<void, ConversionError> ExportDocument::write(const std::function<bool(std::string_view)>& take,
                                                           const std::stop_token& stop) const {
    return ContentConversion::write(content(), style_, take, stop);
}

std::expected<void, ExportDocument::Failure> ExportDocument::writeFile(const QString& path,
                                                                       const SaveOptions& options) const {
    std::expected<void, ConversionError> conversion;
    const auto saved = saveFile(
        QFile::encodeName(path).toStdString(),
        [&](const TakePiece& take) {
            conversion = write(take, options.stop);
            return conversion.has_value();
        },
        options);
    if (saved)
        return {};
    if (!conversion)
        return std::unexpected(Failure(conversion.error()));
    const SaveFailure& failure = saved.error();
    const QString message = saveFailureText(failure, path) + QLatin1Char(' ') + untouchedFileText(failure, path);
    return std::unexpected(Failure(FileError{message.trimmed(), failure.reason == SaveFailure::Reason::cancelled}));
}

} // namespace quelm
