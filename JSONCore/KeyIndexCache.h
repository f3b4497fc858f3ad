#pragma once

#include "JSONCore/NodeID.h"

#include <memory>
#include <mutex>
#include <unordered_map>

namespace quelm {

class KeyIndex;

/// The key indexes that one tree has built so far. A copy starts with none, so that edits of a tree never copy an index
/// that a snapshot would share; a moved tree takes its indexes along. Reading threads may share it under `mutex()`.
class KeyIndexCache {
public:
    KeyIndexCache();
    KeyIndexCache(const KeyIndexCache&);
    KeyIndexCache(KeyIndexCache&&) noexcept;
    KeyIndexCache& operator=(const KeyIndexCache&);
    KeyIndexCache& operator=(KeyIndexCache&&) noexcept;
    ~KeyIndexCache();

    std::mutex& mutex() const;

    /// The index of an object, or null.
    KeyIndex* find(NodeID object) const;

    KeyIndex& add(NodeID object, KeyIndex index);
    void drop(NodeID object);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quelm
