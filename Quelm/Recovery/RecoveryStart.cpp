#include "Quelm/Recovery/RecoveryStart.h"

#include "FileCore/FileLoading.h"
#include "FileCore/FileStamp.h"

#include <algorithm>
#include <map>
#include <utility>

namespace quelm {

namespace {

/// What files hold, each read once at most.
class FileChecksums {
public:
    FileChecksums(std::stop_token stop, SystemCalls& calls) : stop_(std::move(stop)), calls_(calls) {}

    /// Whether a file could not be looked into.
    bool hasMissed() const { return hasMissed_; }

    bool holds(const std::string& path, const ContentChecksum& checksum) {
        const auto found = known_.find(path);
        if (found != known_.end())
            return found->second == checksum;
        // The size of a file is known without reading it.
        const auto stamp = FileStamp::of(path, calls_);
        if (!stamp) {
            hasMissed_ = true;
            return false;
        }
        if (stamp->size != checksum.size)
            return false;
        const auto read = checksumOfFile(path, stop_, calls_);
        hasMissed_ = hasMissed_ || (!read && isPassing(read.error()));
        return known_.emplace(path, read ? std::optional(*read) : std::nullopt).first->second == checksum;
    }

private:
    /// A folder or a device in the place of the file stays one.
    static bool isPassing(const LoadFailure& failure) {
        return failure.reason == LoadFailure::Reason::system || failure.reason == LoadFailure::Reason::noMemory;
    }

    std::stop_token stop_;
    SystemCalls& calls_;
    bool hasMissed_ = false;
    /// Absent for a file that cannot be read.
    std::map<std::string, std::optional<ContentChecksum>> known_;
};

} // namespace

bool isBackupOf(const FileBackup& backup, const std::string& path) {
    if (backup.original == path)
        return true;
    const auto original = FileStamp::of(backup.original);
    const auto file = FileStamp::of(path);
    return original && file && original->isSameFile(*file);
}

std::expected<RecoveryStart, NoRecoveryStart> findRecoveryStart(const JournalSummary& summary,
                                                                std::span<const FileBackup> backups,
                                                                const std::stop_token& stop, SystemCalls& calls) {
    FileChecksums checksums(stop, calls);
    for (std::size_t index = summary.starts.size(); index-- > 0;) {
        const journal::Base& base = summary.starts[index].base;
        if (!base.checksum)
            return RecoveryStart{.index = index, .source = RecoveryStart::Source::nothing};
        if (!base.path)
            continue;
        if (checksums.holds(*base.path, *base.checksum))
            return RecoveryStart{.index = index, .source = RecoveryStart::Source::file};
        const auto backup = std::ranges::find_if(backups, [&](const FileBackup& each) {
            return !each.isDamaged && each.checksum == *base.checksum && isBackupOf(each, *base.path);
        });
        if (backup != backups.end())
            return RecoveryStart{.index = index,
                                 .source = RecoveryStart::Source::backup,
                                 .backup = static_cast<std::size_t>(backup - backups.begin())};
        if (stop.stop_requested())
            return std::unexpected(NoRecoveryStart::cancelled);
    }
    return std::unexpected(checksums.hasMissed() ? NoRecoveryStart::unreachable : NoRecoveryStart::changed);
}

} // namespace quelm
