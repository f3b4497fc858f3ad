#include "Quelm/Documents/FileWriting.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

namespace quelm {

namespace {

struct FileWriting {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileWriting)
};

/// A folder, or a device or pipe, which must not be replaced by a file.
FileError notAFileError(const QFileInfo& info) {
    return {info.isDir() ? FileWriting::tr("Ya hay una carpeta con ese nombre.")
                         : FileWriting::tr("Ya hay algo con ese nombre que no es un archivo normal.")};
}

FileError openError(const QSaveFile& file) {
    const QFileInfo info(file.fileName());
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir())
        return {FileWriting::tr("La carpeta «%1» no existe.").arg(folder.filePath())};
    if (info.exists() && !info.isWritable())
        return {FileWriting::tr("No tienes permiso para escribir en el archivo.")};
    if (!folder.isWritable())
        return {FileWriting::tr("No tienes permiso para escribir en la carpeta «%1».").arg(folder.filePath())};
    return {FileWriting::tr("No se pudo crear el archivo: %1.").arg(file.errorString())};
}

bool writeAll(QSaveFile& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const qint64 written = file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

std::expected<void, FileError> writeFile(const QString& path, const SharedText& bytes) {
    const auto written = writeFileInPieces(path, [&](const TakeBytes& take) { return take(bytes.view()); });
    if (!written)
        return std::unexpected(written.error());
    return {};
}

std::expected<bool, FileError> writeFileInPieces(const QString& path,
                                                 const std::function<bool(const TakeBytes& take)>& produce) {
    if (const QFileInfo old(path); old.exists() && !old.isFile())
        return std::unexpected(notAFileError(old));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return std::unexpected(openError(file));

    bool hasFailed = false;
    const bool isWhole = produce([&](std::string_view piece) {
        hasFailed = hasFailed || !writeAll(file, piece);
        return !hasFailed;
    });
    if (!hasFailed && !isWhole)
        return false;
    if (hasFailed || !file.commit())
        return std::unexpected(
            FileError{FileWriting::tr("La escritura del archivo falló: %1.").arg(file.errorString())});
    return true;
}

} // namespace quelm
