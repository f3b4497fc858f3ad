#include "Quelm/Recovery/DetachedNumbers.h"

namespace quelm {

std::int64_t DetachedNumbers::add(std::int64_t content, NodeID node) {
    const std::int64_t number = next_++;
    set(content, node, number);
    return number;
}

std::optional<std::int64_t> DetachedNumbers::take(std::int64_t content, NodeID node) {
    return set(content, node, std::nullopt);
}

std::optional<std::int64_t> DetachedNumbers::set(std::int64_t content, NodeID node,
                                                 std::optional<std::int64_t> number) {
    auto& nodes = numbers_[content];
    const auto found = nodes.find(node.raw);
    const std::optional<std::int64_t> before = found == nodes.end() ? std::nullopt : std::optional(found->second);
    if (before == number)
        return before;
    changes_.push_back({content, node, before});
    if (number)
        nodes.insert_or_assign(node.raw, *number);
    else
        nodes.erase(found);
    return before;
}

void DetachedNumbers::rollBack() {
    while (!changes_.empty()) {
        const Change change = changes_.back();
        set(change.content, change.node, change.before);
        // The change that this was is one itself.
        changes_.pop_back();
        changes_.pop_back();
    }
}

void DetachedNumbers::restore(Numbers numbers) {
    for (auto& [content, nodes] : numbers_)
        for (const auto& [node, number] : nodes)
            numbers[content].insert_or_assign(node, number);
    numbers_ = std::move(numbers);
}

} // namespace quelm
