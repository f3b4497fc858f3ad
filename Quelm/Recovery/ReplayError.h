#pragma once

#include <cstdint>

namespace quelm {

/// Why what a journal says cannot be repeated.
enum class ReplayError : std::uint8_t {
    /// A record names what is not there, or makes what no document can be.
    impossible,
    /// What it makes is longer, or more, than a document can hold.
    tooLarge,
    noMemory,
    cancelled,
};

} // namespace quelm
