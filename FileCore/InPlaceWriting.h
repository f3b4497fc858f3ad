#pragma once

#include "FileCore/FileSaving.h"
#include "FileCore/SaveTarget.h"

#include <expected>
#include <string>

namespace quelm {

/// The absolute path by which a backup names the target: it is looked at when there is another working folder.
std::string backedUpPath(const SaveTarget& target);

/// Makes the old file of the target hold the bytes of `source`, an open file, without replacing it: after a backup in
/// `options.backupFolder`, from which the former contents come back when something fails. `options.willReplace` is
/// called, if it is there, before the first byte changes.
std::expected<SavedFile, SaveFailure> writeInPlace(const SaveTarget& target, int source,
                                                   const ContentChecksum& checksum, const SaveOptions& options);

} // namespace quelm
