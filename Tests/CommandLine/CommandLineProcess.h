#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace quelm {

/// One run of the real quelm-cli, as a shell would start it.
struct CommandLineProcess {
    struct Result {
        /// The exit status; 128 and the signal's number when a signal ended the program.
        int status = -1;
        std::string output;
        std::string errors;

        friend bool operator==(const Result&, const Result&) = default;
    };

    /// How a stream of the program is set up.
    enum class Stream {
        captured, ///< read from, or collected into, memory
        closed,   ///< not there at all
        broken,   ///< a pipe whose other end is closed
        full,     ///< a device without space
    };

    std::vector<std::string> arguments;
    /// Bytes on standard input, written through a pipe in small pieces.
    std::string input = {};
    Stream inputStream = Stream::captured;
    Stream outputStream = Stream::captured;
    /// The working directory.
    std::string folder = "/";
    /// The size at which the system refuses to let a file grow further.
    std::optional<long> largestFile = std::nullopt;

    /// Runs the program to its end.
    Result run() const;
};

/// A run with nothing but arguments.
CommandLineProcess::Result runCommandLine(std::vector<std::string> arguments);

/// For messages of failed tests.
std::ostream& operator<<(std::ostream& out, const CommandLineProcess::Result& result);

} // namespace quelm
