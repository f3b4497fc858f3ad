#pragma once

#include "TextCore/SharedText.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace quelm {

/// Texts that a tree holds beside the text it was parsed from: decoded strings and edited values. Append-only; a text
/// keeps its 32-bit offset and its place in memory. Copies share the memory and may all go on appending: each takes
/// room of its own in the chunk they share, from any thread.
///
/// Chunk k holds the offsets from 4096 · (2^k − 1) on, 4096 · 2^k of them, so that an offset names its chunk by itself.
class TextArena {
public:
    /// Bytes in the largest text that fits: the last chunk.
    static constexpr std::size_t maximumTextSize = std::size_t{4096} << 19;

    std::string_view text(std::uint32_t offset, std::uint32_t length) const {
        const Place place = placeOf(offset);
        return {chunks_[place.chunk]->bytes() + place.within, length};
    }

    /// Who keeps the text at an offset alive.
    std::shared_ptr<const void> ownerOf(std::uint32_t offset) const { return chunks_[placeOf(offset).chunk]; }

    /// Stores a copy and returns its offset. Throws std::bad_alloc, and std::length_error when no chunk that is left
    /// can hold it: there is one of 2 GiB, one of 1 GiB and so on.
    std::uint32_t append(std::string_view text);

    /// The offset of a text that stands in this arena already.
    std::optional<std::uint32_t> offsetOf(std::string_view text) const;

    /// Whether what stands at an offset here stands there as well, in the same memory.
    bool sharesTextAt(std::uint32_t offset, const TextArena& other) const {
        const std::size_t chunk = placeOf(offset).chunk;
        return chunks_[chunk] == other.chunks_[chunk];
    }

private:
    struct Chunk {
        explicit Chunk(std::size_t size);
        ~Chunk();
        Chunk(const Chunk&) = delete;
        Chunk& operator=(const Chunk&) = delete;

        char* bytes() const { return bytes_; }
        /// The start of `count` bytes that nobody else will write; absent when they do not fit.
        std::optional<std::size_t> take(std::size_t count);

        const std::size_t size;

    private:
        char* bytes_;
        std::atomic<std::size_t> used_ = 0;
    };
    struct Place {
        std::size_t chunk;
        std::size_t within;
    };
    static constexpr std::size_t chunkCount = 20;

    static constexpr std::size_t sizeOf(std::size_t chunk) { return std::size_t{4096} << chunk; }
    static constexpr std::size_t startOf(std::size_t chunk) { return sizeOf(chunk) - 4096; }
    static constexpr Place placeOf(std::uint32_t offset) {
        const std::size_t chunk = static_cast<std::size_t>(std::bit_width((std::uint64_t{offset} + 4096) / 4096)) - 1;
        return {chunk, offset - startOf(chunk)};
    }

    std::array<std::shared_ptr<Chunk>, chunkCount> chunks_;
    /// The chunk that was appended to last.
    std::size_t current_ = 0;
};

} // namespace quelm
