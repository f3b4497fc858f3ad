#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/FileStamp.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"
#include "FileCore/WorkProgress.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace quelm {

/// Why a file could not be saved. In every case the file holds what it held before, or, when `backup` is not empty, its
/// former contents are there.
struct SaveFailure {
    enum class Step : std::uint8_t {
        find,        ///< the file, its folder, or what the path leads to
        create,      ///< the new file beside it
        write,       ///< the new bytes
        synchronize, ///< the new bytes, to the device
        adopt,       ///< owner, permissions or attributes of the old file
        replace,     ///< the old file by the new one
        backUp,      ///< the old bytes, before the file is written in place
        writeInPlace,
        restore, ///< the old bytes, after writing in place had failed
    };
    enum class Reason : std::uint8_t {
        system, ///< `error` says why
        folder,
        notAFile,
        noFolder,
        readOnlyFile,
        readOnlyFolder,
        /// Somebody else has changed the file, or put one there, since the save began; `found` is its state.
        changedMeanwhile,
        /// The bytes ended early, or the hook before the replacement refused.
        notProduced,
        cancelled,
    };
    Step step = Step::find;
    Reason reason = Reason::system;
    /// What the system said; none when it was not asked.
    SystemError error;
    /// Where the former contents are, when the file may hold neither them nor the new ones.
    std::string backup;
    /// With `changedMeanwhile`.
    std::optional<FileStamp> found = std::nullopt;

    static SaveFailure at(Step step, SystemError error) { return {step, Reason::system, error, {}}; }

    friend bool operator==(const SaveFailure&, const SaveFailure&) = default;
};

struct SavedFile {
    /// Of the file as it was left.
    FileStamp stamp;
    ContentChecksum checksum;
    /// Behind all symbolic links.
    std::string path;
    /// What could not be kept of the old file (owner, attributes), or not be ensured (that the new name survives a loss
    /// of power at once): nothing that a user must be stopped for.
    bool isComplete = true;
    /// Whether a loss of power leaves the file as it was saved. Otherwise the old one may come back.
    bool isDurable = true;
};

/// Takes a piece of the bytes, valid during the call; returns whether it wants more.
using TakePiece = std::function<bool(std::string_view)>;
/// Gives all bytes in order until no more are wanted; returns whether those were all. May throw, which leaves the file
/// as it was.
using ProducePieces = std::function<bool(const TakePiece&)>;

struct SaveOptions {
    /// Where the former contents go before a file is written in place; created with 0700 if need be. Without one no
    /// file is: one with other hard links is replaced, and they keep the former contents; one that cannot be replaced
    /// is refused.
    std::string backupFolder = {};
    std::stop_token stop = {};
    /// Told of the bytes as they are written; whoever knows how many there will be sets the total.
    WorkProgress* progress = nullptr;
    /// Called when all the bytes are safe and the file is about to become them; false keeps it as it was. Not called
    /// again. The save may still fail after that.
    std::function<bool(const ContentChecksum&)> willReplace = {};
    SystemCalls* calls = &SystemCalls::real();
};

/// Makes the file at `path` hold exactly the bytes, or leaves it as it was, whatever fails and whenever the process or
/// the machine ends.
///
/// As a rule the bytes go to a new file in the same folder, which is synchronized, gets permissions, owner (as far as
/// allowed) and extended attributes of the old one, and takes its name; then the folder is synchronized. Symbolic links
/// are followed and stay. A file that has other hard links, or stands in a folder that may not be written, is written
/// in place instead, after its contents were copied to a synchronized backup (see `FileBackup`), which goes away when
/// all is done. Right before the old bytes would go the file is looked at once more: one that is not as it was found at
/// the beginning is left alone. What a process that was killed left of new files in the folder is cleared away (see
/// `TemporaryFile`). Blocks; for any thread.
std::expected<SavedFile, SaveFailure> saveFile(const std::string& path, const ProducePieces& produce,
                                               const SaveOptions& options = {});

} // namespace quelm
