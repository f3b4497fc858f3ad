#include "Quelm/Documents/DocumentSaving.h"

#include "Quelm/Documents/FileWriting.h"
#include "Quelm/Documents/JSONDocument.h"

#include <QCoreApplication>

#include <new>

namespace quelm {

std::expected<void, FileError> saveDocument(const QString& path, const JSONContent& snapshot) {
    try {
        return writeFile(path, JSONDocument::fileContents(snapshot));
    } catch (const std::bad_alloc&) {
        return std::unexpected(FileError{
            QCoreApplication::translate("quelm::FileWriting", "No hay memoria suficiente para escribir el archivo.")});
    }
}

} // namespace quelm
