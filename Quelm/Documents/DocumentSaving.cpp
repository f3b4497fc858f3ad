#include "Quelm/Documents/DocumentSaving.h"

#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/FileFailureText.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <new>
#include <string>

namespace quelm {

namespace {

struct DocumentSaving {
    Q_DECLARE_TR_FUNCTIONS(quelm::DocumentSaving)
};

QString outOfMemoryText() {
    return DocumentSaving::tr("No hay memoria suficiente para escribir el archivo.");
}

/// The text in pieces of about a megabyte: its own are some kilobytes.
bool writeText(const TextRope& text, const TakePiece& take) {
    constexpr std::size_t pieceSize = std::size_t{1} << 20;
    std::string piece;
    piece.reserve(pieceSize);
    bool isWanted = true;
    text.forEachChunk({0, text.byteCount()}, [&](std::string_view chunk) {
        if (piece.size() + chunk.size() > pieceSize) {
            isWanted = isWanted && take(piece);
            piece.clear();
        }
        if (isWanted)
            piece += chunk;
    });
    return isWanted && take(piece);
}

/// The bytes of `JSONDocument::fileContents`, made while they are written.
bool writeContent(const JSONContent& content, const TakePiece& take, const std::stop_token& stop) {
    if (content.text)
        return writeText(*content.text, take);
    return !content.tree || ContentConversion::write(content, content.style, take, stop).has_value();
}

QString keptText(const SaveFailure& failure, const QString& path) {
    if (!failure.backup.empty())
        return untouchedFileText(failure, path) + DocumentSaving::tr(" Tus cambios siguen abiertos.");
    if (failure.reason == SaveFailure::Reason::changedMeanwhile)
        return DocumentSaving::tr("No se ha perdido nada: el archivo tiene lo que ha escrito el otro programa y tus "
                                  "cambios siguen abiertos.");
    return QFileInfo(path).isFile()
               ? DocumentSaving::tr(
                     "No se ha perdido nada: el archivo sigue como estaba y tus cambios siguen abiertos.")
               : DocumentSaving::tr("No se ha perdido nada: tus cambios siguen abiertos.");
}

/// What happened, and that nothing was lost.
FileError fileError(const QString& reason, const SaveFailure& failure, const QString& path) {
    return {reason + QLatin1Char(' ') + keptText(failure, path), failure.reason == SaveFailure::Reason::cancelled,
            failure.found};
}

} // namespace

std::expected<SavedFile, FileError> saveDocument(const QString& path, const JSONContent& snapshot,
                                                 SaveOptions options) {
    const std::string name = QFile::encodeName(path).toStdString();
    if (options.progress && snapshot.text)
        options.progress->setTotal(snapshot.text->byteCount());
    bool isProduced = false;
    try {
        auto saved = saveFile(
            name,
            [&](const TakePiece& take) {
                isProduced = writeContent(snapshot, take, options.stop);
                return isProduced;
            },
            options);
        if (saved)
            return *std::move(saved);
        const SaveFailure& failure = saved.error();
        // Nothing else can be wrong with a content.
        const bool isShortOfMemory = failure.reason == SaveFailure::Reason::notProduced && !isProduced;
        return std::unexpected(
            fileError(isShortOfMemory ? outOfMemoryText() : saveFailureText(failure, path), failure, path));
    } catch (const std::bad_alloc&) {
        return std::unexpected(fileError(outOfMemoryText(), {}, path));
    }
}

} // namespace quelm
