#pragma once

#include <source_location>

namespace quelm {

/// Prints what was violated and where on standard error, then aborts. It is never compiled out.
[[noreturn]] void programmingError(const char* violated, std::source_location where = std::source_location::current());

/// States a precondition or an invariant: a false `holds` is a programming error and stops the process, in
/// every build. `violated` says in words what should have been true.
constexpr void require(bool holds, const char* violated, std::source_location where = std::source_location::current()) {
    if (!holds) [[unlikely]]
        programmingError(violated, where);
}

} // namespace quelm
