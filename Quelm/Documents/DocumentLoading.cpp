#include "Quelm/Documents/DocumentLoading.h"

#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/FileReading.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/ParseErrorText.h"

#include <QCoreApplication>

#include <new>

namespace quelm {

std::expected<JSONContent, FileError> loadDocument(const QString& path, std::stop_token stop) {
    std::expected<SharedText, FileError> bytes = readFile(path, stop);
    if (!bytes)
        return std::unexpected(std::move(bytes.error()));
    try {
        std::expected<JSONContent, JSONParseError> content = JSONDocument::read(*std::move(bytes), std::move(stop));
        if (!content)
            return std::unexpected(FileError{parseErrorText(content.error())});
        if (content->tree)
            ContentConversion::prepareForDisplay(*content->tree);
        return *std::move(content);
    } catch (const std::bad_alloc&) {
        return std::unexpected(FileError{
            QCoreApplication::translate("quelm::FileReading", "No hay memoria suficiente para abrir el archivo.")});
    }
}

} // namespace quelm
