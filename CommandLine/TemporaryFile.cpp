#include "CommandLine/TemporaryFile.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace quelm {

std::expected<TemporaryFile, SystemError> TemporaryFile::createPrivate(const std::string& folder) {
    return create(folder, 0600);
}

std::expected<TemporaryFile, SystemError> TemporaryFile::createWithDefaultPermissions(const std::string& folder) {
    return create(folder, 0666);
}

std::expected<TemporaryFile, SystemError> TemporaryFile::create(const std::string& folder, unsigned mode) {
    // The process number keeps programs apart that run at once; a name that a killed one left behind is
    // passed over.
    const std::string stem = folder + "/.quelm-" + std::to_string(::getpid()) + '-';
    for (int attempt = 0;; ++attempt) {
        std::string path = stem + std::to_string(attempt);
        auto file = openFile(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, mode);
        if (file)
            return TemporaryFile(std::move(path), std::move(*file));
        if (file.error().code != EEXIST)
            return std::unexpected(file.error());
    }
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : path_(std::exchange(other.path_, {})), file_(std::move(other.file_)) {}

TemporaryFile::~TemporaryFile() {
    if (!path_.empty())
        ::unlink(path_.c_str());
}

std::expected<void, SystemError> TemporaryFile::moveTo(const std::string& path) {
    if (auto closed = file_.close(); !closed)
        return closed;
    if (std::rename(path_.c_str(), path.c_str()) != 0)
        return std::unexpected(SystemError::last());
    path_.clear();
    return {};
}

} // namespace quelm
