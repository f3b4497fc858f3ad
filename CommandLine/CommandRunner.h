#pragma once

#include "CommandLine/FileWriting.h"
#include "CommandLine/Options.h"
#include "FileCore/SystemError.h"
#include "JSONCore/JSONContent.h"

#include <expected>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quelm {

/// What the program tells its caller, from good to bad.
enum class ExitStatus : int {
    success = 0,
    /// A file is not JSON.
    invalid = 1,
    /// A file or stream could not be read or written, or the arguments mean nothing.
    failure = 2,
};

/// Carries out one command on the standard streams.
///
/// It keeps the last file that it read until its own end, so that a program that
/// ends with its last command need not give back a large tree first.
class CommandRunner {
public:
    /// Results go to standard output; what is wrong goes to standard error, in Spanish.
    ExitStatus run(std::span<const std::string_view> arguments);

private:
    ExitStatus run(const HelpCommand& command);
    ExitStatus run(const VersionCommand& command);
    ExitStatus run(const CheckCommand& command);
    ExitStatus run(const RewriteCommand& command);

    ExitStatus checkFile(const std::string& name);
    ExitStatus load(const std::string& name);

    std::expected<void, SystemError> writeResult(const JSONStyle& style, const WritePiece& write);

    std::optional<JSONContent> content_;
};

} // namespace quelm
