#pragma once

#include <cerrno>
#include <string>

namespace quelm {

/// Why the system refused an operation on a file: a code of <cerrno>.
struct SystemError {
    int code = 0;

    /// What the system call that failed last on this thread left behind.
    static SystemError last() { return SystemError{errno}; }

    /// The reason in Spanish, to stand after a colon: without capital letter or full stop. A code that has no
    /// words here is told by its number and the system's own words.
    std::string description() const;

    friend bool operator==(SystemError, SystemError) = default;
};

} // namespace quelm
