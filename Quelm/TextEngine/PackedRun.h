#pragma once

#include "Quelm/TextEngine/AttributeRun.h"

#include <cstdint>

namespace quelm {

/// A run in one word, since a coloured text of some megabytes may have a run for every few characters; or the place of
/// a chunk of derived runs, of which it has the length.
struct PackedRun {
    PackedRun() : length(0), foreground(0), isSettled(0), isChunk(0) {}
    explicit PackedRun(const AttributeRun& run)
        : length(static_cast<std::uint64_t>(run.length)),
          foreground(static_cast<std::uint8_t>(run.attributes.foreground)), isSettled(run.isSettled), isChunk(0) {}

    static PackedRun ofChunk(qint64 length) {
        PackedRun run({length, {}, true});
        run.isChunk = 1;
        return run;
    }

    AttributeRun unpacked() const {
        return {static_cast<qint64>(length), {static_cast<ColorRole>(foreground)}, isSettled != 0};
    }

    /// Whether both are one run if they are adjacent; chunks never are.
    bool hasSameLook(const PackedRun& other) const {
        return foreground == other.foreground && isSettled == other.isSettled && !isChunk && !other.isChunk;
    }

    std::uint64_t length : 48;
    std::uint64_t foreground : 8;
    std::uint64_t isSettled : 1;
    std::uint64_t isChunk : 1;
};

} // namespace quelm
