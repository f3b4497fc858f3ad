#include "CommandLine/FileWriting.h"

#include "FileCore/FileDescriptor.h"
#include "FileCore/FileSaving.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm {

namespace {

std::expected<void, SystemError> writeThrough(const std::string& path, const ProduceBytes& produce) {
    auto file = openFile(path.c_str(), O_WRONLY);
    if (!file)
        return std::unexpected(file.error());
    const int descriptor = file->number();
    struct stat status{};
    if (::fstat(descriptor, &status) != 0)
        return std::unexpected(SystemError::last());
    const bool isFile = S_ISREG(status.st_mode);
    // One that has a name is replaced or left alone. It has come there since `saveFile` looked, or bears its name
    // elsewhere.
    if (isFile && status.st_nlink > 0)
        return std::unexpected(SystemError{EBUSY});
    off_t size = 0;
    const auto written = produce([&](std::string_view piece) {
        size += static_cast<off_t>(piece.size());
        return writeAll(descriptor, piece);
    });
    if (!written)
        return written;
    // It may have been longer.
    if (isFile && ::ftruncate(descriptor, size) != 0)
        return std::unexpected(SystemError::last());
    return file->close();
}

} // namespace

std::expected<void, SystemError> writeFile(const std::string& path, std::string_view bytes) {
    return writeFile(path, [bytes](const WritePiece& write) { return write(bytes); });
}

std::expected<void, SystemError> writeFile(const std::string& path, const ProduceBytes& produce) {
    std::expected<void, SystemError> produced;
    const auto saved = saveFile(path, [&](const TakePiece& take) {
        // A piece that is not taken is told of by `saveFile` itself, which ignores this one.
        produced = produce([&take](std::string_view piece) -> std::expected<void, SystemError> {
            if (!take(piece))
                return std::unexpected(SystemError{EIO});
            return {};
        });
        return produced.has_value();
    });
    if (saved)
        return {};
    switch (saved.error().reason) {
    case SaveFailure::Reason::notAFile:
        return writeThrough(path, produce);
    case SaveFailure::Reason::notProduced:
        return produced;
    case SaveFailure::Reason::changedMeanwhile:
        return std::unexpected(SystemError{EBUSY});
    default:
        return std::unexpected(saved.error().error);
    }
}

} // namespace quelm
