#pragma once

#include "JSONCore/JSONStyle.h"

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quelm {

/// What the program is asked to do. A file of the name "-" is standard input.
struct HelpCommand {
    friend bool operator==(HelpCommand, HelpCommand) = default;
};
struct VersionCommand {
    friend bool operator==(VersionCommand, VersionCommand) = default;
};
struct CheckCommand {
    /// One or more, in the order in which they are to be checked.
    std::vector<std::string> files;
    friend bool operator==(const CheckCommand&, const CheckCommand&) = default;
};
/// Reads one file and writes its value in another style.
struct RewriteCommand {
    JSONStyle style;
    std::string input;
    /// Absent: standard output.
    std::optional<std::string> output;
    friend bool operator==(const RewriteCommand&, const RewriteCommand&) = default;
};
using Command = std::variant<HelpCommand, VersionCommand, CheckCommand, RewriteCommand>;

/// Arguments that mean nothing: what is wrong with them, in one Spanish sentence without full stop.
struct UsageError {
    std::string message;
    friend bool operator==(const UsageError&, const UsageError&) = default;
};

/// The command that the arguments ask for, the program's own name not among them. Options may stand before
/// and after the files; "--" ends them; of an option given twice the last one counts.
std::expected<Command, UsageError> parseCommand(std::span<const std::string_view> arguments);

} // namespace quelm
