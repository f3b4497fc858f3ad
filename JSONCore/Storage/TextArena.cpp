#include "JSONCore/Storage/TextArena.h"

#include "TextCore/PageMemory.h"

#include <cstring>
#include <functional>
#include <stdexcept>

namespace quelm {

TextArena::Chunk::Chunk(std::size_t chunkSize)
    : size(chunkSize), bytes_(static_cast<char*>(pagememory::allocate(chunkSize))) {}

TextArena::Chunk::~Chunk() {
    pagememory::release(bytes_, size);
}

std::optional<std::size_t> TextArena::Chunk::take(std::size_t count) {
    std::size_t start = used_.load(std::memory_order_relaxed);
    do {
        if (count > size - start)
            return std::nullopt;
    } while (!used_.compare_exchange_weak(start, start + count, std::memory_order_relaxed));
    return start;
}

std::uint32_t TextArena::append(std::string_view text) {
    for (std::size_t chunk = current_; chunk < chunkCount; ++chunk) {
        if (text.size() > sizeOf(chunk))
            continue;
        if (!chunks_[chunk])
            chunks_[chunk] = std::make_shared<Chunk>(sizeOf(chunk));
        if (const auto start = chunks_[chunk]->take(text.size())) {
            std::memcpy(chunks_[chunk]->bytes() + *start, text.data(), text.size());
            // A text too long for the chunk in use leaves the room in it to shorter ones.
            if (text.size() <= sizeOf(current_))
                current_ = chunk;
            return static_cast<std::uint32_t>(startOf(chunk) + *start);
        }
    }
    throw std::length_error("the arena of a tree has no room for a text");
}

std::optional<std::uint32_t> TextArena::offsetOf(std::string_view text) const {
    const std::less_equal<const char*> notAfter;
    for (std::size_t chunk = 0; chunk < chunkCount; ++chunk) {
        if (!chunks_[chunk])
            continue;
        const char* bytes = chunks_[chunk]->bytes();
        if (notAfter(bytes, text.data()) && notAfter(text.data() + text.size(), bytes + sizeOf(chunk)))
            return static_cast<std::uint32_t>(startOf(chunk) + static_cast<std::size_t>(text.data() - bytes));
    }
    return std::nullopt;
}

} // namespace quelm
