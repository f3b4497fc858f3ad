#include "FileCore/FileSaving.h"

#include "FileCore/FileAttributes.h"
#include "FileCore/FileBackup.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/InPlaceWriting.h"
#include "FileCore/PrivateFolder.h"
#include "FileCore/ProducedBytes.h"
#include "FileCore/SaveTarget.h"
#include "FileCore/TemporaryFile.h"
#include "FileCore/Uninterrupted.h"

#include <utility>

namespace quelm {

namespace {

using Step = SaveFailure::Step;
using Reason = SaveFailure::Reason;
using Result = std::expected<SavedFile, SaveFailure>;

bool isRefusal(SystemError error) {
    return error.code == EACCES || error.code == EPERM || error.code == EROFS;
}

/// A new file could not be made in the target's folder.
SaveFailure creationFailure(SystemError error) {
    if (error.code == ENOENT || error.code == ENOTDIR)
        return {Step::create, Reason::noFolder, error, {}};
    return {Step::create, isRefusal(error) ? Reason::readOnlyFolder : Reason::system, error, {}};
}

/// Collects all the bytes before the file is touched: they may end early, and cannot be made twice.
Result collectAndWriteInPlace(const SaveTarget& target, const ProducePieces& produce, const SaveOptions& options) {
    SystemCalls& calls = *options.calls;
    if (auto created = createPrivateFolder(options.backupFolder, calls); !created)
        return std::unexpected(SaveFailure::at(Step::backUp, created.error()));
    TemporaryFile::removeLeftBehind(options.backupFolder, calls);
    auto collected = TemporaryFile::createPrivate(options.backupFolder, calls);
    if (!collected)
        return std::unexpected(SaveFailure::at(Step::backUp, collected.error()));
    if (auto removed = collected->removeName(); !removed)
        return std::unexpected(SaveFailure::at(Step::backUp, removed.error()));
    const auto checksum = writeProduced(collected->descriptor(), produce, options);
    if (!checksum)
        return std::unexpected(checksum.error());
    return writeInPlace(target, collected->descriptor(), *checksum, options);
}

/// The bytes and all else that belongs to the new file, on the device; what of it could not be kept is told in
/// `isComplete`.
Result fill(const TemporaryFile& file, const SaveTarget& target, const ProducePieces& produce,
            const SaveOptions& options) {
    SystemCalls& calls = *options.calls;
    const auto checksum = writeProduced(file.descriptor(), produce, options);
    if (!checksum)
        return std::unexpected(checksum.error());
    SavedFile saved{{}, *checksum, target.path};
    if (target.old) {
        const auto adopted = adoptAttributes(file.descriptor(), target.path, *target.old, calls);
        if (!adopted)
            return std::unexpected(SaveFailure::at(Step::adopt, adopted.error()));
        saved.isComplete = *adopted;
    }
    if (auto synchronized = synchronize(file.descriptor(), calls); !synchronized)
        return std::unexpected(SaveFailure::at(Step::synchronize, synchronized.error()));
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file.descriptor(), status); }) != 0)
        return std::unexpected(SaveFailure::at(Step::synchronize, SystemError::last()));
    saved.stamp = FileStamp::from(status);
    return saved;
}

/// What the folder's rights or a mount point do not let be replaced, though a new file can stand beside it.
bool isTiedToItsPlace(SystemError error) {
    return isRefusal(error) || error.code == EBUSY || error.code == EXDEV;
}

Result replace(TemporaryFile file, const SaveTarget& target, const ProducePieces& produce, const SaveOptions& options) {
    auto saved = fill(file, target, produce, options);
    if (!saved)
        return saved;
    if (options.willReplace && !options.willReplace(saved->checksum))
        return std::unexpected(SaveFailure{Step::replace, Reason::notProduced, {}, {}});
    if (auto unchanged = target.checkUnchanged(Step::replace, *options.calls); !unchanged)
        return std::unexpected(std::move(unchanged.error()));

    if (auto moved = file.moveTo(target.path); !moved) {
        if (!target.old || options.backupFolder.empty() || !isTiedToItsPlace(moved.error()))
            return std::unexpected(SaveFailure::at(Step::replace, moved.error()));
        SaveOptions told = options;
        told.willReplace = nullptr;
        return writeInPlace(target, file.descriptor(), saved->checksum, told);
    }
    // The file is the new one, and its bytes are on the device: from here on nothing is a failure. Before the folder is
    // there too, a loss of power may bring the old one back. Closed only now: the lock keeps others off the new file
    // until it has its name.
    const bool hasFolder = synchronizeFolder(target.folder().c_str(), *options.calls).has_value();
    const bool isClosed = file.close().has_value();
    saved->isComplete = saved->isComplete && hasFolder && isClosed;
    saved->isDurable = hasFolder;
    return saved;
}

Result saveTo(const SaveTarget& target, const ProducePieces& produce, const SaveOptions& options) {
    SystemCalls& calls = *options.calls;
    const bool mayWriteInPlace = target.old && !options.backupFolder.empty();
    if (mayWriteInPlace && target.old->st_nlink > 1)
        return collectAndWriteInPlace(target, produce, options);

    const std::string folder = target.folder();
    TemporaryFile::removeLeftBehind(folder, calls);
    auto file = target.old ? TemporaryFile::createPrivate(folder, calls)
                           : TemporaryFile::createWithDefaultPermissions(folder, calls);
    if (file)
        return replace(*std::move(file), target, produce, options);
    if (mayWriteInPlace && isRefusal(file.error()))
        return collectAndWriteInPlace(target, produce, options);
    return std::unexpected(creationFailure(file.error()));
}

} // namespace

Result saveFile(const std::string& path, const ProducePieces& produce, const SaveOptions& options) {
    const auto target = findSaveTarget(path, *options.calls);
    if (!target)
        return std::unexpected(target.error());
    auto saved = saveTo(*target, produce, options);
    if (saved && !options.backupFolder.empty())
        removeOwnBackups(backedUpPath(*target), options.backupFolder, *options.calls);
    return saved;
}

} // namespace quelm
