#include "FileCore/FileBackup.h"

#include "FileCore/BackupFile.h"
#include "FileCore/BackupFormat.h"
#include "FileCore/FileCopying.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/FileLoading.h"
#include "FileCore/SaveTarget.h"
#include "FileCore/TemporaryFile.h"
#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/file.h>
#include <unistd.h>

namespace quelm {

namespace {

/// A backup's head and tail, which belong together.
struct Frame {
    std::string original;
    std::int64_t contentsOffset = 0;
    backupFormat::Checksums checksums;
};

/// The bytes at a place; fewer when the file ends. An error only of the system.
std::expected<std::string, SystemError> readAt(int file, std::int64_t offset, std::size_t count, SystemCalls& calls) {
    if (auto moved = moveTo(file, offset, calls); !moved)
        return std::unexpected(moved.error());
    std::string bytes(count, '\0');
    std::size_t length = 0;
    while (length < count) {
        const auto more = readSome(file, std::span(bytes).subspan(length), calls);
        if (!more)
            return std::unexpected(more.error());
        if (*more == 0)
            break;
        length += *more;
    }
    bytes.resize(length);
    return bytes;
}

/// Absent when the file is no whole backup.
std::expected<std::optional<Frame>, SystemError> readFrame(int file, std::int64_t fileSize, SystemCalls& calls) {
    const auto size = static_cast<std::size_t>(fileSize);
    const auto fixed = readAt(file, 0, std::min(size, backupFormat::fixedHeadSize), calls);
    if (!fixed)
        return std::unexpected(fixed.error());
    const auto pathLength = backupFormat::pathLength(*fixed);
    if (!pathLength || *pathLength + backupFormat::fixedHeadSize + backupFormat::tailSize > size)
        return std::nullopt;
    const auto head = readAt(file, 0, backupFormat::fixedHeadSize + *pathLength, calls);
    if (!head)
        return std::unexpected(head.error());
    const auto tail =
        readAt(file, fileSize - static_cast<std::int64_t>(backupFormat::tailSize), backupFormat::tailSize, calls);
    if (!tail)
        return std::unexpected(tail.error());
    const auto checksums = backupFormat::checksums(*head, *tail);
    const std::size_t contentsSize = size - head->size() - backupFormat::tailSize;
    if (!checksums || checksums->before.size != static_cast<std::int64_t>(contentsSize))
        return std::nullopt;
    return Frame{head->substr(backupFormat::fixedHeadSize), static_cast<std::int64_t>(head->size()), *checksums};
}

std::expected<std::int64_t, SystemError> sizeOf(int file, SystemCalls& calls) {
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file, status); }) != 0)
        return std::unexpected(SystemError::last());
    return S_ISREG(status.st_mode) ? status.st_size : 0;
}

std::expected<ContentChecksum, SystemError> checksumAt(int file, std::int64_t offset, std::int64_t size,
                                                       SystemCalls& calls) {
    constexpr std::int64_t blockSize = std::int64_t{1} << 20;
    ContentHasher hasher;
    for (const std::int64_t end = offset + size; offset < end;) {
        const auto block = readAt(file, offset, static_cast<std::size_t>(std::min(blockSize, end - offset)), calls);
        if (!block)
            return std::unexpected(block.error());
        if (block->empty())
            return std::unexpected(SystemError{EIO});
        hasher.update(*block);
        offset += static_cast<std::int64_t>(block->size());
    }
    return hasher.checksum();
}

/// The device may not have yet what reading a file shows.
bool isSynchronized(const std::string& path, SystemCalls& calls) {
    const auto file = openFile(path.c_str(), O_RDONLY | O_NONBLOCK, 0, calls);
    return file && synchronize(file->number(), calls);
}

/// Whether the backup is of use: there is anything to bring back, and the file needs it.
bool isOfUse(int file, const Frame& frame, SystemCalls& calls) {
    const auto checksum = checksumAt(file, frame.contentsOffset, frame.checksums.before.size, calls);
    if (!checksum)
        return true; // it may be readable another time
    if (*checksum != frame.checksums.before)
        return false;
    // The file is as it was before it was written, or all of the new contents had come to it.
    const auto now = checksumOfFile(frame.original, {}, calls);
    if (!now || (*now != frame.checksums.before && *now != frame.checksums.after))
        return true;
    return !isSynchronized(frame.original, calls);
}

/// Absent when it belongs to a process at work or is of no use; then it is removed.
std::optional<FileBackup> examine(const std::string& path, SystemCalls& calls) {
    const auto file = openFile(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0, calls);
    if (!file || uninterrupted([&] { return calls.lock(file->number(), LOCK_EX | LOCK_NB); }) != 0)
        return std::nullopt;
    const auto size = sizeOf(file->number(), calls);
    if (!size)
        return std::nullopt;
    const auto frame = readFrame(file->number(), *size, calls);
    if (!frame)
        return std::nullopt;
    if (!*frame || !isOfUse(file->number(), **frame, calls)) {
        (void)calls.unlink(path.c_str());
        return std::nullopt;
    }
    return FileBackup{path, (*frame)->original, (*frame)->checksums.before};
}

} // namespace

std::vector<FileBackup> findBackups(const std::string& folder, SystemCalls& calls) {
    TemporaryFile::removeLeftBehind(folder, calls);
    struct Found {
        FileBackup backup;
        std::filesystem::file_time_type time;
    };
    std::vector<Found> found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!BackupFile::isName(entry->path().filename().native()))
            continue;
        std::error_code ignored;
        const auto time = entry->last_write_time(ignored);
        if (auto backup = examine(entry->path().native(), calls))
            found.push_back({*std::move(backup), time});
    }
    std::ranges::stable_sort(found, {}, &Found::time);
    std::vector<FileBackup> backups;
    for (Found& each : found)
        backups.push_back(std::move(each.backup));
    return backups;
}

std::expected<SharedText, SystemError> readBackup(const FileBackup& backup, SystemCalls& calls) {
    const auto loaded = loadFile(backup.path, {}, nullptr, calls);
    if (!loaded)
        return std::unexpected(loaded.error().error);
    const std::size_t headSize = backupFormat::head(backup.original).size();
    const auto size = static_cast<std::size_t>(backup.checksum.size);
    const SharedText& bytes = loaded->bytes;
    if (bytes.size() != headSize + size + backupFormat::tailSize)
        return std::unexpected(SystemError{EIO});
    const SharedText contents = bytes.slice(headSize, size).paddedCopy();
    if (ContentChecksum::of(contents.view()) != backup.checksum)
        return std::unexpected(SystemError{EIO});
    return contents;
}

void removeBackup(const FileBackup& backup, SystemCalls& calls) {
    if (uninterrupted([&] { return calls.unlink(backup.path.c_str()); }) == 0)
        (void)synchronizeFolder(folderOf(backup.path).c_str(), calls);
}

} // namespace quelm
