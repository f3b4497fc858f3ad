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
    explicit FileChecksums(std::stop_token stop) : stop_(std::move(stop)) {}

    bool holds(const std::string& path, const ContentChecksum& checksum) {
        const auto found = known_.find(path);
        if (found != known_.end())
            return found->second == checksum;
        // The size of a file is known without reading it.
        const auto stamp = FileStamp::of(path);
        if (!stamp || stamp->size != checksum.size)
            return false;
        const auto read = checksumOfFile(path, stop_);
        return known_.emplace(path, read ? std::optional(*read) : std::nullopt).first->second == checksum;
    }

private:
    std::stop_token stop_;
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

std::optional<RecoveryStart> findRecoveryStart(const JournalSummary& summary, std::span<const FileBackup> backups,
                                               const std::stop_token& stop) {
    FileChecksums checksums(stop);
    for (std::size_t index = summary.starts.size(); index-- > 0;) {
        const journal::Base& base = summary.starts[index].base;
        if (!base.checksum)
            return RecoveryStart{.index = index, .source = RecoveryStart::Source::nothing};
        if (!base.path)
            continue;
        if (checksums.holds(*base.path, *base.checksum))
            return RecoveryStart{.index = index, .source = RecoveryStart::Source::file};
        const auto backup = std::ranges::find_if(backups, [&](const FileBackup& each) {
            return each.checksum == *base.checksum && isBackupOf(each, *base.path);
        });
        if (backup != backups.end())
            return RecoveryStart{.index = index,
                                 .source = RecoveryStart::Source::backup,
                                 .backup = static_cast<std::size_t>(backup - backups.begin())};
        if (stop.stop_requested())
            return std::nullopt;
    }
    return std::nullopt;
}

} // namespace quelm
