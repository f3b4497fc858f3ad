#include "FileCore/InPlaceWriting.h"

#include "FileCore/BackupFile.h"
#include "FileCore/FileCopying.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/Uninterrupted.h"

#include <fcntl.h>
#include <filesystem>
#include <optional>

namespace quelm {

namespace {

using Step = SaveFailure::Step;
using Reason = SaveFailure::Reason;

/// The old file, open for reading and writing.
std::expected<FileDescriptor, SaveFailure> openOld(const SaveTarget& target, SystemCalls& calls) {
    auto file = openFile(target.path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK, 0, calls);
    if (!file)
        return std::unexpected(SaveFailure::at(Step::backUp, file.error()));
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file->number(), status); }) != 0)
        return std::unexpected(SaveFailure::at(Step::backUp, SystemError::last()));
    if (status.st_dev != target.old->st_dev || status.st_ino != target.old->st_ino)
        return std::unexpected(SaveFailure::at(Step::backUp, SystemError{EBUSY}));
    return *std::move(file);
}

/// Sees to it that the bytes will not be short of space halfway, where the file system can tell.
std::expected<void, SystemError> reserve(int file, std::int64_t sizeBefore, std::int64_t size, SystemCalls& calls) {
    if (size == 0 || uninterrupted([&] { return calls.allocate(file, FALLOC_FL_KEEP_SIZE, 0, size); }) == 0)
        return {};
    const SystemError error = SystemError::last();
    if (error.code != ENOSPC && error.code != EDQUOT && error.code != EFBIG && error.code != EIO)
        return {};
    // Gives back what was reserved beyond the end.
    (void)uninterrupted([&] { return calls.truncate(file, sizeBefore); });
    return std::unexpected(error);
}

std::expected<FileStamp, SystemError> overwrite(int file, int source, const ContentChecksum& checksum,
                                                SystemCalls& calls) {
    if (auto moved = moveTo(source, 0, calls); !moved)
        return std::unexpected(moved.error());
    if (auto moved = moveTo(file, 0, calls); !moved)
        return std::unexpected(moved.error());
    const auto copied = copyBytes(source, file, checksum.size, calls);
    if (!copied)
        return std::unexpected(copied.error());
    // The bytes have been on a device meanwhile, which may have given others back.
    if (*copied != checksum)
        return std::unexpected(SystemError{EIO});
    if (uninterrupted([&] { return calls.truncate(file, checksum.size); }) != 0)
        return std::unexpected(SystemError::last());
    if (auto synchronized = synchronize(file, calls); !synchronized)
        return std::unexpected(synchronized.error());
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file, status); }) != 0)
        return std::unexpected(SystemError::last());
    return FileStamp::from(status);
}

/// Undoes a failure of writing.
SaveFailure restored(BackupFile& backup, int file, SystemError error) {
    if (const auto done = backup.restore(file); !done)
        return {Step::restore, Reason::system, error, backup.path()};
    // One that stays is found to be what the file holds, and goes.
    (void)backup.remove();
    return SaveFailure::at(Step::writeInPlace, error);
}

/// Whether the old file is still what was found, and at its path: nobody would look for the new bytes elsewhere.
std::expected<void, SaveFailure> checkOld(const SaveTarget& target, SystemCalls& calls) {
    struct stat status{};
    if (uninterrupted([&] { return calls.linkStatus(target.path.c_str(), status); }) != 0)
        return std::unexpected(SaveFailure::at(Step::writeInPlace, SystemError::last()));
    return target.checkUnchanged(Step::writeInPlace, calls);
}

} // namespace

std::string backedUpPath(const SaveTarget& target) {
    return std::filesystem::absolute(target.path).native();
}

std::expected<SavedFile, SaveFailure> writeInPlace(const SaveTarget& target, int source,
                                                   const ContentChecksum& checksum, const SaveOptions& options) {
    SystemCalls& calls = *options.calls;
    auto file = openOld(target, calls);
    if (!file)
        return std::unexpected(std::move(file.error()));
    auto backup = BackupFile::create(options.backupFolder, backedUpPath(target), file->number(), checksum, calls);
    if (!backup)
        return std::unexpected(SaveFailure::at(Step::backUp, backup.error()));
    if (options.willReplace && !options.willReplace(checksum))
        return std::unexpected(SaveFailure{Step::writeInPlace, Reason::notProduced, {}, {}});
    if (auto unchanged = checkOld(target, calls); !unchanged)
        return std::unexpected(std::move(unchanged.error()));
    // After the look at the file, whose times this may change.
    if (auto reserved = reserve(file->number(), target.old->st_size, checksum.size, calls); !reserved)
        return std::unexpected(SaveFailure::at(Step::write, reserved.error()));

    backup->setNeeded();
    const auto stamp = overwrite(file->number(), source, checksum, calls);
    if (!stamp)
        return std::unexpected(restored(*backup, file->number(), stamp.error()));
    SavedFile saved{*stamp, checksum, target.path};
    // The file is the new one on the device. A backup that stays is found to be of no use, and goes.
    saved.isComplete = file->close().has_value();
    saved.isComplete = backup->remove().has_value() && saved.isComplete;
    return saved;
}

} // namespace quelm
