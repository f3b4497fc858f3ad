#include "FileCore/FileBackup.h"

#include "FileCore/BackupFile.h"
#include "FileCore/BackupFormat.h"
#include "FileCore/FileCopying.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/FileLoading.h"
#include "FileCore/FileLock.h"
#include "FileCore/TemporaryFile.h"
#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <utility>

namespace quelm {

namespace {

/// A backup's head and tail.
struct Frame {
    enum class State : std::uint8_t { unfinished, damaged, whole };
    State state = State::damaged;
    /// As far as the head tells it.
    std::string original = {};
    std::int64_t contentsOffset = 0;
    /// Of a whole one.
    backupFormat::Checksums checksums = {};
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

bool isZero(std::string_view bytes) {
    return bytes.find_first_not_of('\0') == std::string_view::npos;
}

std::expected<Frame, SystemError> readFrame(int file, std::int64_t fileSize, SystemCalls& calls) {
    using State = Frame::State;
    if (fileSize < static_cast<std::int64_t>(backupFormat::fixedHeadSize))
        return Frame{State::unfinished};
    const auto fixed = readAt(file, 0, backupFormat::fixedHeadSize, calls);
    if (!fixed)
        return std::unexpected(fixed.error());
    const auto lengths = backupFormat::lengths(*fixed);
    if (!lengths)
        return Frame{State::damaged};
    if (fileSize < lengths->backup())
        return Frame{State::unfinished};
    const auto head = readAt(file, 0, lengths->head(), calls);
    if (!head)
        return std::unexpected(head.error());
    Frame frame{.original = head->substr(backupFormat::fixedHeadSize),
                .contentsOffset = static_cast<std::int64_t>(head->size())};
    const auto tail =
        readAt(file, fileSize - static_cast<std::int64_t>(backupFormat::tailSize), backupFormat::tailSize, calls);
    if (!tail)
        return std::unexpected(tail.error());
    // A loss of power may leave the length of a file that has not got all of its bytes yet.
    if (isZero(*tail))
        return Frame{State::unfinished};
    const auto checksums = backupFormat::checksums(*head, *tail);
    if (!checksums || fileSize != lengths->backup() || checksums->before.size != lengths->contents)
        return frame;
    frame.state = State::whole;
    frame.checksums = *checksums;
    return frame;
}

/// Absent for what is no regular file.
std::expected<std::optional<std::int64_t>, SystemError> sizeOf(int file, SystemCalls& calls) {
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file, status); }) != 0)
        return std::unexpected(SystemError::last());
    return S_ISREG(status.st_mode) ? std::optional<std::int64_t>(status.st_size) : std::nullopt;
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

/// Whether the file is as it was before it was written, or all of the new contents have come to it.
bool isWhole(const std::string& original, const backupFormat::Checksums& checksums, SystemCalls& calls) {
    const auto now = checksumOfFile(original, {}, calls);
    if (!now || (*now != checksums.before && *now != checksums.after))
        return false;
    return isSynchronized(original, calls);
}

/// Whether the contents are still what was written; when they cannot be read they may be another time.
bool areContentsIntact(int file, const Frame& frame, SystemCalls& calls) {
    const auto checksum = checksumAt(file, frame.contentsOffset, frame.checksums.before.size, calls);
    return !checksum || *checksum == frame.checksums.before;
}

/// A backup that no other process has.
struct LockedBackup {
    FileDescriptor file;
    Frame frame;
};

/// Absent also when it cannot be read now.
std::optional<LockedBackup> lockBackup(const std::string& path, SystemCalls& calls) {
    auto file = openLocked(path, calls);
    if (!file || !*file)
        return std::nullopt;
    const auto size = sizeOf((*file)->number(), calls);
    if (!size || !*size)
        return std::nullopt;
    auto frame = readFrame((*file)->number(), **size, calls);
    if (!frame)
        return std::nullopt;
    return LockedBackup{std::move(**file), *std::move(frame)};
}

/// Absent when it belongs to a process at work or is of no use; then it is removed.
std::optional<FileBackup> examine(const std::string& path, SystemCalls& calls) {
    using State = Frame::State;
    auto found = lockBackup(path, calls);
    if (!found)
        return std::nullopt;
    const Frame& frame = found->frame;
    const bool isOfNoUse = frame.state == State::unfinished ||
                           (frame.state == State::whole && isWhole(frame.original, frame.checksums, calls));
    if (isOfNoUse) {
        (void)removeLocked(path, found->file, calls);
        return std::nullopt;
    }
    FileBackup backup{.path = path, .original = frame.original, .checksum = {}};
    if (frame.state == State::whole && areContentsIntact(found->file.number(), frame, calls))
        backup.checksum = frame.checksums.before;
    else
        backup.isDamaged = true;
    backup.lock = std::make_shared<const FileDescriptor>(std::move(found->file));
    return backup;
}

/// The paths of a folder's backups, without looking into them.
std::vector<std::filesystem::directory_entry> backupEntries(const std::string& folder) {
    std::vector<std::filesystem::directory_entry> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (BackupFile::isName(entry->path().filename().native()))
            entries.push_back(*entry);
    }
    return entries;
}

} // namespace

std::vector<FileBackup> findBackups(const std::string& folder, SystemCalls& calls) {
    TemporaryFile::removeLeftBehind(folder, calls);
    struct Found {
        FileBackup backup;
        std::filesystem::file_time_type time;
    };
    std::vector<Found> found;
    for (const auto& entry : backupEntries(folder)) {
        std::error_code ignored;
        const auto time = entry.last_write_time(ignored);
        if (auto backup = examine(entry.path().native(), calls))
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
    const std::size_t headSize = backupFormat::fixedHeadSize + backup.original.size();
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
    if (backup.lock)
        (void)removeLocked(backup.path, *backup.lock, calls);
    else if (const auto file = openLocked(backup.path, calls); file && *file)
        (void)removeLocked(backup.path, **file, calls);
}

std::expected<std::string, SystemError> keepBackupAside(const FileBackup& backup, SystemCalls& calls) {
    if (backup.lock)
        return keepLockedAside(backup.path, *backup.lock, calls);
    const auto file = openLocked(backup.path, calls);
    if (!file)
        return std::unexpected(file.error());
    if (!*file)
        return std::unexpected(SystemError{EBUSY});
    return keepLockedAside(backup.path, **file, calls);
}

void removeOwnBackups(const std::string& original, const std::string& folder, SystemCalls& calls) {
    for (const auto& entry : backupEntries(folder)) {
        if (!BackupFile::isOwnName(entry.path().filename().native()))
            continue;
        const auto found = lockBackup(entry.path().native(), calls);
        if (found && found->frame.original == original)
            (void)removeLocked(entry.path().native(), found->file, calls);
    }
}

} // namespace quelm
