#pragma once

#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <expected>
#include <string>

namespace quelm {

/// Creates a folder that nobody else may open (0700), and those above it that are not there, such that it survives a
/// loss of power. One that is there already, and is this user's, is closed to others; those above it stay as they are.
std::expected<void, SystemError> createPrivateFolder(const std::string& path, SystemCalls& calls = SystemCalls::real());

} // namespace quelm
