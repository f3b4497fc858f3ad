#pragma once

#include "FileCore/FileDescriptor.h"
#include "FileCore/JournalFormat.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace quelm {

/// An append-only file of records, each with its length and checksums (see `journalformat`). The process that writes
/// it, or recovers from it, holds a lock (flock(2)), so that no other takes it for one that was left behind; whoever
/// does not hold the lock neither changes, renames nor removes the file. What a record says is not known here. For one
/// thread at a time.
class JournalFile {
public:
    /// The longest payload.
    static constexpr std::size_t longestRecord = journalformat::longestPayload;

    /// A new file that nobody else may read (0600), which is known on the device by its name (the folder is
    /// synchronized). EEXIST when the path is taken. Waits a second at most for a process that takes the new file for
    /// one that was left behind; EWOULDBLOCK when it does not let go.
    static std::expected<JournalFile, SystemError> create(const std::string& path,
                                                          SystemCalls& calls = SystemCalls::real());

    JournalFile(JournalFile&&) noexcept = default;
    JournalFile& operator=(JournalFile&&) noexcept = default;
    /// Leaves the file, unlocked.
    ~JournalFile() = default;

    const std::string& path() const { return path_; }
    /// Of what has been appended, in bytes of the file.
    std::int64_t size() const { return size_; }

    /// Adds a record, whole or not at all: what a failed write leaves is cut off, now or before the next one. From then
    /// on the record survives the end of this process. EFBIG when it is too long.
    std::expected<void, SystemError> append(std::string_view payload);

    /// From then on what was appended survives the end of the machine too. After a failure nobody knows what of it is
    /// on the device: every later call fails likewise.
    std::expected<void, SystemError> synchronize();

    /// Takes the file away, for good. Without effect when it is not there any more. Nothing may be appended afterwards.
    std::expected<void, SystemError> remove();

private:
    friend class JournalRecovery;
    JournalFile(std::string path, FileDescriptor file, std::uint64_t identity, SystemCalls& calls);

    std::expected<void, SystemError> write(std::string_view recordHead, std::string_view payload);
    /// Makes the file, which is empty, a journal with an identity of its own.
    std::expected<void, SystemError> begin();
    std::expected<void, SystemError> cutOffRemains();

    std::string path_;
    FileDescriptor file_;
    std::uint64_t identity_ = 0;
    std::int64_t size_ = 0;
    std::uint64_t recordCount_ = 0;
    bool hasRemains_ = false;
    std::optional<SystemError> syncError_;
    SystemCalls* calls_;
};

} // namespace quelm
