#include "FileCore/TemporaryFile.h"

#include "FileCore/FileLock.h"
#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quelm {

namespace {

constexpr std::string_view prefix = ".quelm-";
constexpr std::string_view suffix = ".tmp";

bool isNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

void removeIfLeftBehind(const std::string& path, SystemCalls& calls) {
    const auto file = openLocked(path, calls);
    struct stat status{};
    if (file && *file && uninterrupted([&] { return calls.fileStatus((*file)->number(), status); }) == 0 &&
        S_ISREG(status.st_mode))
        (void)removeLocked(path, **file, calls);
}

} // namespace

std::expected<TemporaryFile, SystemError> TemporaryFile::createPrivate(const std::string& folder, SystemCalls& calls) {
    return create(folder, 0600, calls);
}

std::expected<TemporaryFile, SystemError> TemporaryFile::createWithDefaultPermissions(const std::string& folder,
                                                                                      SystemCalls& calls) {
    return create(folder, 0666, calls);
}

std::expected<TemporaryFile, SystemError> TemporaryFile::create(const std::string& folder, unsigned mode,
                                                                SystemCalls& calls) {
    constexpr int mostAttempts = 10'000;
    // The process number keeps programs apart that run at once; a name that a killed one left behind is
    // passed over.
    const std::string stem = folder + '/' + std::string(prefix) + std::to_string(::getpid()) + '-';
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        std::string path = stem + std::to_string(attempt) + std::string(suffix);
        auto opened = openFile(path.c_str(), O_RDWR | O_CREAT | O_EXCL, mode, calls);
        if (!opened && opened.error().code != EEXIST)
            return std::unexpected(opened.error());
        if (!opened)
            continue;
        TemporaryFile file(std::move(path), *std::move(opened), calls);
        if (file.isSafe())
            return file;
        file.path_.clear(); // whoever took it removes it
    }
    return std::unexpected(SystemError{EEXIST});
}

/// Locks the file; false when somebody took it for one left behind before it was locked.
bool TemporaryFile::isSafe() const {
    // Where the file system has no locks, nobody can take anything for left behind.
    if (uninterrupted([this] { return calls_->lock(descriptor(), LOCK_EX | LOCK_NB); }) != 0)
        return errno != EWOULDBLOCK;
    struct stat status{};
    return calls_->fileStatus(descriptor(), status) != 0 || status.st_nlink > 0;
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : path_(std::exchange(other.path_, {})), file_(std::move(other.file_)), calls_(other.calls_) {}

TemporaryFile::~TemporaryFile() {
    if (!path_.empty())
        (void)uninterrupted([this] { return calls_->unlink(path_.c_str()); });
}

std::expected<void, SystemError> TemporaryFile::moveTo(const std::string& path) {
    if (uninterrupted([&] { return calls_->rename(path_.c_str(), path.c_str()); }) != 0)
        return std::unexpected(SystemError::last());
    path_.clear();
    return {};
}

std::expected<void, SystemError> TemporaryFile::removeName() {
    if (uninterrupted([this] { return calls_->unlink(path_.c_str()); }) != 0)
        return std::unexpected(SystemError::last());
    path_.clear();
    return {};
}

bool TemporaryFile::isName(std::string_view name) {
    if (name.size() < prefix.size() + suffix.size() || !name.starts_with(prefix) || !name.ends_with(suffix))
        return false;
    name.remove_prefix(prefix.size());
    name.remove_suffix(suffix.size());
    const std::size_t dash = name.find('-');
    return dash != std::string_view::npos && isNumber(name.substr(0, dash)) && isNumber(name.substr(dash + 1));
}

void TemporaryFile::removeLeftBehind(const std::string& folder, SystemCalls& calls) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string& path = entry->path().native();
        if (isName(std::string_view(path).substr(path.rfind('/') + 1)))
            removeIfLeftBehind(path, calls);
    }
}

} // namespace quelm
