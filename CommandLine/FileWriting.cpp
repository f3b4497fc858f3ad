#include "CommandLine/FileWriting.h"

#include "FileCore/FileDescriptor.h"
#include "FileCore/FileSaving.h"

#include <fcntl.h>

namespace quelm {

namespace {

std::expected<void, SystemError> writeThrough(const std::string& path, const ProduceBytes& produce) {
    auto file = openFile(path.c_str(), O_WRONLY);
    if (!file)
        return std::unexpected(file.error());
    const int descriptor = file->number();
    if (auto written = produce([descriptor](std::string_view piece) { return writeAll(descriptor, piece); }); !written)
        return written;
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
    default:
        return std::unexpected(saved.error().error);
    }
}

} // namespace quelm
