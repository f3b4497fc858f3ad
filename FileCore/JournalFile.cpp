#include "FileCore/JournalFile.h"

#include "FileCore/FileLock.h"
#include "FileCore/SaveTarget.h"
#include "FileCore/Uninterrupted.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace quelm {

namespace {

// Longer payloads are written apart from their heads instead of being copied.
constexpr std::size_t longestCopied = std::size_t{1} << 16;

// Another process may look at the file between its creation and its lock, which takes it no time.
constexpr int lockAttempts = 100;
constexpr auto lockPause = std::chrono::milliseconds(10);
// And it may remove the file then, which holds nothing yet.
constexpr int createAttempts = 10;

std::uint64_t newIdentity() {
    static std::atomic<std::uint64_t> count = 0;
    const auto now = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    return now ^ (static_cast<std::uint64_t>(::getpid()) << 44) ^ (++count << 32);
}

std::expected<void, SystemError> waitForLock(const FileDescriptor& file, SystemCalls& calls) {
    for (int attempt = 1;; ++attempt) {
        const auto locked = tryLock(file, calls);
        if (!locked)
            return std::unexpected(locked.error());
        if (*locked)
            return {};
        if (attempt == lockAttempts)
            return std::unexpected(SystemError{EWOULDBLOCK});
        std::this_thread::sleep_for(lockPause);
    }
}

// A new file that is locked and still bears the name; absent when another process has removed it meanwhile.
std::expected<std::optional<FileDescriptor>, SystemError> createLocked(const std::string& path, SystemCalls& calls) {
    auto file = openFile(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_APPEND, 0600, calls);
    if (!file)
        return std::unexpected(file.error());
    const auto locked = waitForLock(*file, calls);
    if (!locked) {
        // Whoever else has the lock removes it. Without locks nobody has.
        if (locked.error().code != EWOULDBLOCK)
            calls.unlink(path.c_str());
        return std::unexpected(locked.error());
    }
    const auto isThere = isFileAt(path, *file, calls);
    if (!isThere)
        return std::unexpected(isThere.error());
    if (!*isThere)
        return std::nullopt;
    return std::move(*file);
}

std::expected<FileDescriptor, SystemError> createLockedForSure(const std::string& path, SystemCalls& calls) {
    for (int attempt = 0; attempt < createAttempts; ++attempt) {
        auto file = createLocked(path, calls);
        if (!file)
            return std::unexpected(file.error());
        if (*file)
            return std::move(**file);
    }
    return std::unexpected(SystemError{EBUSY});
}

} // namespace

JournalFile::JournalFile(std::string path, FileDescriptor file, std::uint64_t identity, SystemCalls& calls)
    : path_(std::move(path)), file_(std::move(file)), identity_(identity), calls_(&calls) {}

std::expected<JournalFile, SystemError> JournalFile::create(const std::string& path, SystemCalls& calls) {
    auto file = createLockedForSure(path, calls);
    if (!file)
        return std::unexpected(file.error());
    JournalFile journal(path, std::move(*file), 0, calls);
    auto made = journal.begin();
    // The bytes before the name: a name without them would be a journal of nothing.
    if (made)
        made = journal.synchronize();
    if (made)
        made = synchronizeFolder(folderOf(path).c_str(), calls);
    if (!made) {
        calls.unlink(path.c_str());
        return std::unexpected(made.error());
    }
    return journal;
}

std::expected<void, SystemError> JournalFile::begin() {
    identity_ = newIdentity();
    const std::string head = journalformat::head(identity_);
    if (auto written = writeAll(file_.number(), head, *calls_); !written)
        return written;
    size_ = static_cast<std::int64_t>(head.size());
    return {};
}

std::expected<void, SystemError> JournalFile::append(std::string_view payload) {
    if (payload.size() > longestRecord)
        return std::unexpected(SystemError{EFBIG});
    if (auto cut = cutOffRemains(); !cut)
        return cut;
    const std::string head = journalformat::recordHead(identity_, recordCount_, payload);
    if (auto written = write(head, payload); !written) {
        hasRemains_ = true;
        // When this does not work either, the next call tries again. Until then they look as if torn.
        static_cast<void>(cutOffRemains());
        return written;
    }
    size_ += static_cast<std::int64_t>(head.size() + payload.size());
    ++recordCount_;
    return {};
}

std::expected<void, SystemError> JournalFile::write(std::string_view recordHead, std::string_view payload) {
    if (payload.size() <= longestCopied) {
        std::string bytes(recordHead);
        bytes += payload;
        return writeAll(file_.number(), bytes, *calls_);
    }
    if (auto written = writeAll(file_.number(), recordHead, *calls_); !written)
        return written;
    return writeAll(file_.number(), payload, *calls_);
}

std::expected<void, SystemError> JournalFile::cutOffRemains() {
    if (!hasRemains_)
        return {};
    if (uninterrupted([&] { return calls_->truncate(file_.number(), size_); }) != 0)
        return std::unexpected(SystemError::last());
    hasRemains_ = false;
    return {};
}

std::expected<void, SystemError> JournalFile::synchronize() {
    if (syncError_)
        return std::unexpected(*syncError_);
    if (auto done = synchronizeData(file_.number(), *calls_); !done) {
        syncError_ = done.error();
        return done;
    }
    return {};
}

std::expected<void, SystemError> JournalFile::remove() {
    return removeLocked(path_, file_, *calls_);
}

} // namespace quelm
