#pragma once

#include "FileCore/SystemError.h"
#include "TextCore/SharedText.h"

#include <cstddef>
#include <expected>
#include <string_view>

/// The three streams that a program is started with, unbuffered.
namespace quelm::standardStreams {

/// Call first in `main`. Writing to a pipe that nobody reads, or past a limit of size, becomes an error that
/// the write reports instead of a signal that kills; a stream that the program was started without is kept
/// closed for good, so that no file opened later can take its number and receive what was meant for the
/// stream.
void prepare();

/// Standard input to its end, as `readDescriptor`.
std::expected<SharedText, SystemError> readInput(std::size_t limit);

std::expected<void, SystemError> writeOutput(std::string_view bytes);

/// An error that cannot be told is dropped.
void writeError(std::string_view bytes);

/// Call when all output is written: some systems report a failed write only here.
std::expected<void, SystemError> closeOutput();

} // namespace quelm::standardStreams
