#include "Quelm/EditorWindow/ExportDocument.h"

#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/FileWriting.h"
#include "Quelm/Documents/JSONDocument.h"

namespace quelm {

const QStringList& ExportDocument::contentTypes() {
    return JSONDocument::writableContentTypes();
}

std::expected<void, ConversionError> ExportDocument::write(const std::function<bool(std::string_view)>& take,
                                                           const std::stop_token& stop) const {
    return ContentConversion::write(content(), style_, take, stop);
}

std::expected<void, ExportDocument::Failure> ExportDocument::writeFile(const QString& path,
                                                                       const std::stop_token& stop) const {
    std::expected<void, ConversionError> conversion;
    const auto written = writeFileInPieces(path, [&](const TakeBytes& take) {
        conversion = write(take, stop);
        return conversion.has_value();
    });
    if (!written)
        return std::unexpected(Failure(written.error()));
    if (!conversion)
        return std::unexpected(Failure(conversion.error()));
    return {};
}

} // namespace quelm
