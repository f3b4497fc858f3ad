#include "Quelm/Documents/FileReading.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <new>

namespace quelm {

namespace {

/// The longest single read: a cancelled one ends soon.
constexpr std::size_t blockSize = std::size_t{16} << 20;

/// Room beyond the size that a file states, so that the read which finds its end needs no growth.
constexpr std::size_t roomForTheEnd = std::size_t{64} << 10;

struct FileReading {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileReading)
};

FileError openError(const QFile& file) {
    const QFileInfo info(file.fileName());
    if (!info.exists())
        return {FileReading::tr("El archivo no existe.")};
    if (!info.isReadable())
        return {FileReading::tr("No tienes permiso para leer el archivo.")};
    return {FileReading::tr("No se pudo leer el archivo: %1.").arg(file.errorString())};
}

std::expected<SharedText, FileError> readToEnd(QFile& file, const std::stop_token& stop) {
    TextBuilder bytes(static_cast<std::size_t>(std::max<qint64>(file.size(), 0)) + roomForTheEnd);
    while (!stop.stop_requested()) {
        const std::size_t count = std::clamp(bytes.available(), roomForTheEnd, blockSize);
        const qint64 read = file.read(bytes.room(count), static_cast<qint64>(count));
        if (read < 0)
            return std::unexpected(
                FileError{FileReading::tr("La lectura del archivo falló: %1.").arg(file.errorString())});
        if (read == 0)
            break;
        bytes.advance(static_cast<std::size_t>(read));
    }
    return bytes.finish();
}

} // namespace

std::expected<SharedText, FileError> readFile(const QString& path, std::stop_token stop) {
    if (QFileInfo(path).isDir())
        return std::unexpected(FileError{FileReading::tr("Es una carpeta, no un archivo.")});
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::unexpected(openError(file));
    try {
        return readToEnd(file, stop);
    } catch (const std::bad_alloc&) {
        return std::unexpected(FileError{FileReading::tr("No hay memoria suficiente para leer el archivo.")});
    }
}

} // namespace quelm
