#pragma once

#include "FileCore/SystemError.h"
#include "TextCore/SharedText.h"

#include <cstddef>
#include <expected>
#include <string>

namespace quelm {

/// The bytes of a file, read into memory once and padded. Works for whatever can be read to an end: files
/// that grow or shrink meanwhile, pipes, devices. Stops after `limit` bytes, so that an endless source does
/// not fill the memory: a caller that gives one more than it can use recognises a longer text by its size.
/// Throws std::bad_alloc.
std::expected<SharedText, SystemError> readFile(const std::string& path, std::size_t limit);

/// The same for a descriptor that is open already, from where it stands; it stays open.
std::expected<SharedText, SystemError> readDescriptor(int descriptor, std::size_t limit);

} // namespace quelm
