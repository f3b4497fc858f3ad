#include "FileCore/JournalRecovery.h"

#include "FileCore/FileLock.h"
#include "FileCore/Uninterrupted.h"
#include "TextCore/Check.h"

#include <fcntl.h>
#include <limits>
#include <new>
#include <unistd.h>

namespace quelm {

namespace {

// Half of the machine's memory. Without this a sparse file of terabytes, which costs its maker nothing, would be read
// until the system ends the process.
std::int64_t largestJournal() {
    const std::int64_t pages = ::sysconf(_SC_PHYS_PAGES);
    const std::int64_t pageSize = ::sysconf(_SC_PAGE_SIZE);
    return pages > 0 && pageSize > 0 ? pages / 2 * pageSize : std::numeric_limits<std::int64_t>::max();
}

std::expected<SharedText, SystemError> readWhole(const FileDescriptor& file, std::int64_t size, SystemCalls& calls) {
    // One byte more than that, so that the end is met without growing.
    TextBuilder bytes(static_cast<std::size_t>(size) + 1);
    constexpr std::size_t leastRoom = 1;
    for (;;) {
        char* const room = bytes.room(leastRoom);
        const auto count = readSome(file.number(), std::span(room, bytes.available()), calls);
        if (!count)
            return std::unexpected(count.error());
        if (*count == 0)
            return bytes.finish();
        bytes.advance(*count);
    }
}

std::expected<SharedText, SystemError> readJournal(const FileDescriptor& file, SystemCalls& calls) {
    struct stat status = {};
    if (uninterrupted([&] { return calls.fileStatus(file.number(), status); }) != 0)
        return std::unexpected(SystemError::last());
    if (!S_ISREG(status.st_mode))
        return std::unexpected(SystemError{EINVAL});
    if (status.st_size > largestJournal())
        return std::unexpected(SystemError{EFBIG});
    return readWhole(file, status.st_size, calls);
}

} // namespace

JournalRecovery::JournalRecovery(std::string path, FileDescriptor file, JournalContents contents, SystemCalls& calls)
    : path_(std::move(path)), file_(std::move(file)), contents_(std::move(contents)), calls_(&calls) {}

std::expected<std::optional<JournalRecovery>, SystemError> JournalRecovery::open(const std::string& path,
                                                                                 SystemCalls& calls) {
    // Not through a link, and not waiting for the other end of a pipe.
    auto file = openFile(path.c_str(), O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK, 0, calls);
    if (!file) {
        if (file.error().code == ENOENT)
            return std::nullopt;
        return std::unexpected(file.error());
    }
    const auto locked = tryLock(*file, calls);
    if (!locked)
        return std::unexpected(locked.error());
    if (!*locked)
        return std::nullopt;
    const auto isThere = isFileAt(path, *file, calls);
    if (!isThere)
        return std::unexpected(isThere.error());
    if (!*isThere)
        return std::nullopt;
    try {
        const auto bytes = readJournal(*file, calls);
        if (!bytes)
            return std::unexpected(bytes.error());
        return JournalRecovery(path, std::move(*file), JournalContents::read(*bytes), calls);
    } catch (const std::bad_alloc&) {
        return std::unexpected(SystemError{ENOMEM});
    }
}

std::expected<JournalFile, SystemError> JournalRecovery::continueWriting() && {
    require(contents_.end != JournalContents::End::unknown, "a journal that is continued is one");
    JournalFile journal(std::move(path_), std::move(file_), contents_.identity, *calls_);
    journal.size_ = contents_.validSize;
    journal.recordCount_ = contents_.records.size();
    if (contents_.end != JournalContents::End::whole) {
        journal.hasRemains_ = true;
        if (auto cut = journal.cutOffRemains(); !cut)
            return std::unexpected(cut.error());
    }
    if (journal.size_ == 0) {
        if (auto begun = journal.begin(); !begun)
            return std::unexpected(begun.error());
    }
    // What is appended must not come to stand before remains that the device still has, nor after records that it has
    // not got yet.
    if (auto done = journal.synchronize(); !done)
        return std::unexpected(done.error());
    return journal;
}

std::expected<void, SystemError> JournalRecovery::remove() && {
    return removeLocked(path_, file_, *calls_);
}

std::expected<std::string, SystemError> JournalRecovery::keepAside() && {
    return keepLockedAside(path_, file_, *calls_);
}

} // namespace quelm
