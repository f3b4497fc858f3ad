#pragma once

#include <string>
#include <string_view>

/// What opens a file, converts what it holds and saves it again, fed with any bytes of a file. A broken promise stops
/// the process.
namespace quelm::fuzzing {

/// The first byte chooses the style; the others are the file.
void feedOpening(std::string_view input);

std::string openingInput(unsigned char style, std::string_view file);

} // namespace quelm::fuzzing
