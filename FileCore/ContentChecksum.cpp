#include "FileCore/ContentChecksum.h"

#include <new>
#include <xxhash.h>

namespace quelm {

struct ContentHasher::State {
    State() : hash(XXH3_createState()) {
        if (hash == nullptr)
            throw std::bad_alloc();
        XXH3_128bits_reset(hash);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { XXH3_freeState(hash); }

    XXH3_state_t* hash;
    std::int64_t size = 0;
};

ContentChecksum ContentChecksum::of(std::string_view bytes) {
    const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
    return {static_cast<std::int64_t>(bytes.size()), hash.high64, hash.low64};
}

ContentHasher::ContentHasher() : state_(std::make_unique<State>()) {}
ContentHasher::ContentHasher(ContentHasher&&) noexcept = default;
ContentHasher& ContentHasher::operator=(ContentHasher&&) noexcept = default;
ContentHasher::~ContentHasher() = default;

void ContentHasher::update(std::string_view bytes) {
    // A null pointer is an error there, even for no bytes.
    if (bytes.empty())
        return;
    XXH3_128bits_update(state_->hash, bytes.data(), bytes.size());
    state_->size += static_cast<std::int64_t>(bytes.size());
}

ContentChecksum ContentHasher::checksum() const {
    const XXH128_hash_t hash = XXH3_128bits_digest(state_->hash);
    return {state_->size, hash.high64, hash.low64};
}

} // namespace quelm
