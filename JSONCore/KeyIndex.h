#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// How often each key occurs in one object, keys compared by canonical equivalence. A hash table with open addressing;
/// every operation O(1) amortised beside reading the key. The keys are views that must stay valid for the life of the
/// index.
class KeyIndex {
public:
    explicit KeyIndex(std::size_t expectedKeys);

    /// An index of all the keys.
    explicit KeyIndex(std::span<const std::string_view> keys);

    std::int64_t count(std::string_view key) const;
    void add(std::string_view key);
    /// The key must have been added as often as it is removed.
    void remove(std::string_view key);

    /// `base` if no key is equal to it, else "base 2", "base 3"… the first that no key is equal to. Asking again goes
    /// on where the last answer was found.
    std::string uniqueKey(std::string_view base);

    /// Whether both count the same keys: for tests.
    bool hasSameCounts(const KeyIndex& other) const;

private:
    struct Entry {
        std::string_view key;
        std::uint64_t hash;
        std::int64_t count;
    };
    /// What is known of the numbered keys of a stem: all from 2 to below `firstFree` are taken.
    struct Stem {
        std::string base;
        std::int64_t firstFree;
    };

    void add(std::string_view key, std::uint64_t hash);
    const Entry* find(std::string_view key, std::uint64_t hash) const;
    void rebuild();
    Stem& stem(std::string_view base);
    void reopenNumber(std::string_view removedKey);

    std::vector<Entry> entries_;
    /// 1 + the index of an entry, or 0; a power of two of them, at most half in use.
    std::vector<std::uint32_t> slots_;
    std::vector<Stem> stems_;
};

} // namespace quelm
