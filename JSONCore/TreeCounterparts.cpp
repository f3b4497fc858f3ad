#include "JSONCore/TreeCounterparts.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace quelm {

namespace {

/// Calls `visit` for every child and its counterpart. As long as the keys are the same, which is the rule, nothing
/// needs to be looked up; from then on the nth that is left of a key is the nth that is left of it on the other side.
template <typename Visit>
void forEachPairOfMembers(const JSONTree& tree, ChildList children, const JSONTree& other, ChildList others,
                          const Visit& visit) {
    auto child = children.begin();
    auto counterpart = others.begin();
    while (child != children.end() && counterpart != others.end() && tree.key(*child) == other.key(*counterpart))
        visit(*child++, *counterpart++);
    if (child == children.end() || counterpart == others.end())
        return;

    struct Remaining {
        std::vector<NodeID> nodes;
        std::size_t next = 0;
    };
    std::unordered_map<std::string_view, Remaining> remaining;
    for (; counterpart != others.end(); ++counterpart)
        remaining[other.key(*counterpart)].nodes.push_back(*counterpart);
    for (; child != children.end(); ++child) {
        const auto found = remaining.find(tree.key(*child));
        if (found != remaining.end() && found->second.next < found->second.nodes.size())
            visit(*child, found->second.nodes[found->second.next++]);
    }
}

template <typename Visit>
void forEachPairOfElements(ChildList children, ChildList others, const Visit& visit) {
    auto counterpart = others.begin();
    for (auto child = children.begin(); child != children.end() && counterpart != others.end(); ++child)
        visit(*child, *counterpart++);
}

} // namespace

std::optional<NodeID> TreeCounterparts::childLike(NodeID child, Pair parents) const {
    const NodeKind kind = tree_.kind(parents.node);
    if (kind != other_.kind(parents.other))
        return std::nullopt;
    const ChildList others = other_.children(parents.other);
    if (kind == NodeKind::array) {
        const std::int64_t index = tree_.indexInParent(child).value_or(others.size());
        return index < others.size() ? std::optional(others[index]) : std::nullopt;
    }
    const std::string_view key = tree_.key(child);
    std::int64_t before = 0;
    for (const NodeID sibling : tree_.children(parents.node)) {
        if (sibling == child)
            break;
        before += tree_.key(sibling) == key ? 1 : 0;
    }
    for (const NodeID candidate : others) {
        if (other_.key(candidate) == key && before-- == 0)
            return candidate;
    }
    return std::nullopt;
}

std::optional<TreeCounterparts::Descent> TreeCounterparts::descend(NodeID node) const {
    std::vector<NodeID> way;
    std::optional<NodeID> ancestor = node;
    for (; ancestor && *ancestor != JSONTree::holder; ancestor = tree_.parent(*ancestor))
        way.push_back(*ancestor);
    if (!ancestor || way.empty())
        return std::nullopt;
    Pair reached{way.back(), other_.root()};
    for (auto next = way.rbegin() + 1; next != way.rend(); ++next) {
        const std::optional<NodeID> counterpart = childLike(*next, reached);
        if (!counterpart)
            return Descent{reached.other, false};
        reached = {*next, *counterpart};
    }
    return Descent{reached.other, true};
}

std::optional<NodeID> TreeCounterparts::find(NodeID node) const {
    const std::optional<Descent> descent = descend(node);
    return descent && descent->isWhole ? std::optional(descent->other) : std::nullopt;
}

NodeID TreeCounterparts::findNearest(NodeID node) const {
    const std::optional<Descent> descent = descend(node);
    return descent ? descent->other : other_.root();
}

TreeOutline TreeCounterparts::outline(const TreeOutline& of, const std::stop_token& stop) const {
    TreeOutline result;
    // Those below expanded containers only come first: as a rule there is nothing to be found below the others.
    std::vector<Pair> expanded;
    std::vector<Pair> collapsed;
    std::int64_t remaining = of.expanded().size();
    const auto note = [&](NodeID node, NodeID other) {
        if (!isContainer(tree_.kind(node)) || tree_.kind(node) != other_.kind(other))
            return;
        if (of.expanded().contains(node)) {
            --remaining;
            result.setExpanded(other, true, false, other_);
            expanded.push_back({node, other});
        } else if (!tree_.children(node).empty() && !other_.children(other).empty()) {
            collapsed.push_back({node, other});
        }
    };
    note(tree_.root(), other_.root());
    while (!stop.stop_requested() && (!expanded.empty() || (!collapsed.empty() && remaining > 0))) {
        std::vector<Pair>& pending = expanded.empty() ? collapsed : expanded;
        const Pair pair = pending.back();
        pending.pop_back();
        const ChildList children = tree_.children(pair.node);
        const ChildList others = other_.children(pair.other);
        if (tree_.kind(pair.node) == NodeKind::object)
            forEachPairOfMembers(tree_, children, other_, others, note);
        else
            forEachPairOfElements(children, others, note);
    }
    if (stop.stop_requested())
        return {};
    const bool isRootCollapsed = of.rowCount() > 0 && !of.expanded().contains(tree_.root());
    result.rebuild(other_);
    if (isRootCollapsed)
        result.setExpanded(other_.root(), false, false, other_);
    return result;
}

} // namespace quelm
