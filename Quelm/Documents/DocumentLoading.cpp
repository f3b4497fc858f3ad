#include "Quelm/Documents/DocumentLoading.h"

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
        // Large objects mark duplicate keys by an index, which is made here rather than at the first painting.
        if (content->tree && content->tree->kind(content->tree->root()) == NodeKind::object)
            content->tree->prepareKeyIndex(content->tree->root());
        return *std::move(content);
    } catch (const std::bad_alloc&) {
        return std::unexpected(FileError{
            QCoreApplication::translate("quelm::FileReading", "No hay memoria suficiente para abrir el archivo.")});
    }
}

} // namespace quelm
