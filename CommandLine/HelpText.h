#pragma once

#include <string_view>

/// What the program says about itself, in Spanish, every line ended by a line feed.
namespace quelm::helpText {

/// How it is called, shown after wrong arguments.
std::string_view usage();

/// That, and what the commands and options do.
std::string_view full();

/// "quelm-cli 1.2.3"
std::string_view version();

} // namespace quelm::helpText
