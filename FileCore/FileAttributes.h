#pragma once

#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <expected>
#include <string>
#include <sys/stat.h>

namespace quelm {

/// Gives the new file `descriptor`, which only its owner may open yet, what the old one at `oldPath` has: extended
/// attributes (access control lists among them), owner, group and permissions. Returns whether that is all of it: an
/// owner or an attribute that this user or the file system may not set is left out, and permissions that would mean
/// something else for another owner or group with it. Never lets anybody in whom the old file kept out. What is right
/// already is not touched, since some file systems refuse any change.
std::expected<bool, SystemError> adoptAttributes(int descriptor, const std::string& oldPath, const struct stat& old,
                                                 SystemCalls& calls);

} // namespace quelm
