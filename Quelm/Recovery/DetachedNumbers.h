#pragma once

#include "JSONCore/NodeID.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quelm {

/// The numbers under which a journal keeps detached nodes, of each content its own. Changes are provisional until they
/// are settled.
class DetachedNumbers {
public:
    explicit DetachedNumbers(std::int64_t next) : next_(next) {}

    /// A new number for a node that is detached now.
    std::int64_t add(std::int64_t content, NodeID node);
    /// The number of a node that is attached now, if it has one, which it loses.
    std::optional<std::int64_t> take(std::int64_t content, NodeID node);
    /// The node is not any more what the number stands for.
    void forget(std::int64_t content, NodeID node) { set(content, node, std::nullopt); }

    void settle() { changes_.clear(); }
    /// Takes back what was changed since the last call of either.
    void rollBack();

    /// Those of a content whose tree is gone; of all contents.
    void forgetContent(std::int64_t content) { numbers_.erase(content); }
    void forgetAll() { numbers_.clear(); }

    /// All there are, for `restore`; none are left.
    using Numbers = std::unordered_map<std::int64_t, std::unordered_map<std::int32_t, std::int64_t>>;
    Numbers takeAll() { return std::exchange(numbers_, {}); }
    /// Brings them back beside those given since, which are more recent.
    void restore(Numbers numbers);

private:
    struct Change {
        std::int64_t content = 0;
        NodeID node;
        std::optional<std::int64_t> before;
    };
    std::optional<std::int64_t> set(std::int64_t content, NodeID node, std::optional<std::int64_t> number);

    std::int64_t next_;
    Numbers numbers_;
    std::vector<Change> changes_;
};

} // namespace quelm
