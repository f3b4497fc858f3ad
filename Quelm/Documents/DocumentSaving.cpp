#include "Quelm/Documents/DocumentSaving.h"

#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/FileWriting.h"
#include "Quelm/Documents/JSONDocument.h"

#include <QCoreApplication>

#include <new>

namespace quelm {

namespace {

FileError outOfMemoryError() {
    return {QCoreApplication::translate("quelm::FileWriting", "No hay memoria suficiente para escribir el archivo.")};
}

/// The bytes of `JSONDocument::fileContents`, made while they are written.
std::expected<void, FileError> saveTree(const QString& path, const JSONContent& snapshot) {
    const auto written = writeFileInPieces(path, [&](const TakeBytes& take) {
        return ContentConversion::write(snapshot, snapshot.style, take, {}).has_value();
    });
    if (!written)
        return std::unexpected(written.error());
    // Nothing else can be wrong with a tree.
    if (!*written)
        return std::unexpected(outOfMemoryError());
    return {};
}

} // namespace

std::expected<void, FileError> saveDocument(const QString& path, const JSONContent& snapshot) {
    if (!snapshot.text && snapshot.tree)
        return saveTree(path, snapshot);
    try {
        return writeFile(path, JSONDocument::fileContents(snapshot));
    } catch (const std::bad_alloc&) {
        return std::unexpected(outOfMemoryError());
    }
}

} // namespace quelm
