#include "FileCore/BackupFile.h"

#include "FileCore/BackupFormat.h"
#include "FileCore/FileCopying.h"
#include "FileCore/FileStamp.h"
#include "FileCore/PrivateFolder.h"
#include "FileCore/SaveTarget.h"
#include "FileCore/Uninterrupted.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace quelm {

namespace {

constexpr std::string_view suffix = ".backup";

std::string ownPrefix() {
    return std::to_string(::getpid()) + '-';
}

std::expected<FileStamp, SystemError> stampOf(int file, SystemCalls& calls) {
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file, status); }) != 0)
        return std::unexpected(SystemError::last());
    return FileStamp::from(status);
}

} // namespace

bool BackupFile::isName(std::string_view name) {
    return name.ends_with(suffix);
}

bool BackupFile::isOwnName(std::string_view name) {
    return isName(name) && name.starts_with(ownPrefix());
}

BackupFile::BackupFile(BackupFile&& other) noexcept
    : path_(std::exchange(other.path_, {})), file_(std::move(other.file_)), calls_(other.calls_),
      contentsOffset_(other.contentsOffset_), contents_(other.contents_), isNeeded_(other.isNeeded_) {}

BackupFile::~BackupFile() {
    if (!path_.empty() && !isNeeded_)
        (void)uninterrupted([this] { return calls_->unlink(path_.c_str()); });
}

std::expected<BackupFile, SystemError> BackupFile::createEmpty(const std::string& folder, SystemCalls& calls) {
    constexpr int mostAttempts = 10'000;
    const std::string stem = folder + '/' + ownPrefix();
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        std::string path = stem + std::to_string(attempt) + std::string(suffix);
        auto opened = openFile(path.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600, calls);
        if (!opened && opened.error().code != EEXIST)
            return std::unexpected(opened.error());
        if (!opened)
            continue;
        BackupFile file(std::move(path), *std::move(opened), calls);
        // Whoever looks for backups at this moment may have taken the empty file for one that is not whole. Without
        // locks on the file system nobody finds any.
        const bool isLocked = uninterrupted([&] { return calls.lock(file.file_.number(), LOCK_EX | LOCK_NB); }) == 0;
        struct stat status{};
        const bool isTaken = isLocked ? calls.fileStatus(file.file_.number(), status) == 0 && status.st_nlink == 0
                                      : errno == EWOULDBLOCK;
        if (!isTaken)
            return file;
        file.path_.clear();
    }
    return std::unexpected(SystemError{EEXIST});
}

std::expected<BackupFile, SystemError> BackupFile::create(const std::string& folder, const std::string& path,
                                                          int original, const ContentChecksum& planned,
                                                          SystemCalls& calls) {
    if (auto created = createPrivateFolder(folder, calls); !created)
        return std::unexpected(created.error());
    auto file = createEmpty(folder, calls);
    if (!file)
        return file;
    if (auto filled = file->fill(path, original, planned); !filled)
        return std::unexpected(filled.error());
    if (auto synchronized = synchronizeFolder(folder.c_str(), calls); !synchronized)
        return std::unexpected(synchronized.error());
    return file;
}

std::expected<void, SystemError> BackupFile::fill(const std::string& path, int original,
                                                  const ContentChecksum& planned) {
    const auto before = stampOf(original, *calls_);
    if (!before)
        return std::unexpected(before.error());
    const std::string head = backupFormat::head(path, before->size);
    contentsOffset_ = static_cast<std::int64_t>(head.size());
    if (auto written = writeAll(file_.number(), head, *calls_); !written)
        return written;
    if (auto moved = moveTo(original, 0, *calls_); !moved)
        return moved;
    const auto checksum = copyBytes(original, file_.number(), before->size, *calls_);
    if (!checksum)
        return std::unexpected(checksum.error());
    contents_ = *checksum;
    const auto after = stampOf(original, *calls_);
    if (!after)
        return std::unexpected(after.error());
    if (*after != *before)
        return std::unexpected(SystemError{EBUSY});
    if (auto written = writeAll(file_.number(), backupFormat::tail(head, {*checksum, planned}), *calls_); !written)
        return written;
    return synchronize(file_.number(), *calls_);
}

std::expected<void, SystemError> BackupFile::restore(int original) const {
    if (auto moved = moveTo(file_.number(), contentsOffset_, *calls_); !moved)
        return moved;
    if (auto moved = moveTo(original, 0, *calls_); !moved)
        return moved;
    const auto copied = copyBytes(file_.number(), original, contents_.size, *calls_);
    if (!copied)
        return std::unexpected(copied.error());
    // They have been on a device meanwhile. The backup stays for whoever can read it better.
    if (*copied != contents_)
        return std::unexpected(SystemError{EIO});
    if (uninterrupted([&] { return calls_->truncate(original, contents_.size); }) != 0)
        return std::unexpected(SystemError::last());
    return synchronize(original, *calls_);
}

std::expected<void, SystemError> BackupFile::remove() {
    if (uninterrupted([this] { return calls_->unlink(path_.c_str()); }) != 0)
        return std::unexpected(SystemError::last());
    return synchronizeFolder(folderOf(std::exchange(path_, {})).c_str(), *calls_);
}

} // namespace quelm
