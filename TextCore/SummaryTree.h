#pragma once

#include "TextCore/Check.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace quelm {

/// A sequence of elements that knows sums over them: a persistent B-tree. A value, copied in O(1); changes make a new
/// value in O(log n) that shares what both have in common. Values may be used on any thread.
///
/// `Traits` says what is stored and summed up:
///   Element                      a copyable, default-constructible type;
///   Summary                      sums; a default-constructed one is zero, and there is `+=`;
///   summarize(const Element&)    the element's share;
///   leafCapacity                 elements a leaf, at least 4.
/// A measure is a callable that takes a Summary and returns one of its sums, which must not be negative.
///
/// Invariants:
/// 1. All leaves are of the same depth.
/// 2. A node other than the root is at least half full; the root is a leaf with one element or more, or has two
/// children
///    or more.
/// 3. The summary beside a child is the sum over the elements below it.
template <class Traits>
class SummaryTree {
public:
    using Element = typename Traits::Element;
    using Summary = typename Traits::Summary;

    SummaryTree() = default;

    /// O(n).
    explicit SummaryTree(std::span<const Element> elements) {
        if (!elements.empty())
            root_ = rootAbove(leaves(elements));
    }

    static SummaryTree single(const Element& element) { return SummaryTree(std::span(&element, 1)); }

    bool isEmpty() const { return !root_.node; }
    /// The sums over all elements.
    const Summary& summary() const { return root_.summary; }
    /// Whether both are the same value in memory.
    bool isSameValue(const SummaryTree& other) const { return root_.node == other.root_.node; }

    /// Neither may be called on an empty tree. O(log n).
    const Element& first() const {
        const Node* node = root_.node.get();
        while (node->height != 0)
            node = branch(*node).entries[0].node.get();
        return leaf(*node).elements[0];
    }
    const Element& last() const {
        const Node* node = root_.node.get();
        while (node->height != 0)
            node = branch(*node).entries[node->count - 1].node.get();
        return leaf(*node).elements[node->count - 1];
    }

    /// An element and what is before it.
    struct Place {
        /// Valid while this tree or a copy of it lives; null past the end.
        const Element* element = nullptr;
        Summary before;
    };

    /// The first element that ends beyond `target`: that for which the measure of everything up to and with it is more
    /// than `target`. Past the end when there is none. O(log n).
    template <class Measure>
    Place find(Measure measure, std::int64_t target) const {
        Place place;
        if (!root_.node || measure(root_.summary) <= target)
            return {nullptr, root_.summary};
        std::int64_t rest = target;
        const Node* node = root_.node.get();
        while (node->height != 0) {
            const Branch& inner = branch(*node);
            std::uint32_t index = 0;
            for (;; ++index) {
                const std::int64_t here = measure(inner.entries[index].summary);
                if (here > rest)
                    break;
                rest -= here;
                place.before += inner.entries[index].summary;
            }
            node = inner.entries[index].node.get();
        }
        for (const Element& element : leaf(*node).view()) {
            const Summary share = Traits::summarize(element);
            if (measure(share) > rest) {
                place.element = &element;
                return place;
            }
            rest -= measure(share);
            place.before += share;
        }
        programmingError("the sums of a tree are those of its elements");
    }

    /// The elements before the one that `find` gives, and those from it on. O(log n).
    template <class Measure>
    std::pair<SummaryTree, SummaryTree> split(Measure measure, std::int64_t target) const {
        if (!root_.node || measure(root_.summary) <= target)
            return {*this, {}};
        return splitBelow(root_, measure, target);
    }

    /// O(log n).
    friend SummaryTree operator+(const SummaryTree& left, const SummaryTree& right) {
        if (left.isEmpty())
            return right;
        if (right.isEmpty())
            return left;
        const Joined joined = join(left.root_, right.root_);
        if (!joined.second.node)
            return SummaryTree(joined.first);
        const std::array children{joined.first, joined.second};
        return SummaryTree(makeBranch(children));
    }

    /// Neither may be called on an empty tree. O(log n).
    SummaryTree withoutFirst() const { return SummaryTree(dropFirst(root_)); }
    SummaryTree withoutLast() const { return SummaryTree(dropLast(root_)); }

    /// Calls `visit(const Element&)` for every element in order.
    template <class Visit>
    void forEach(Visit&& visit) const {
        if (root_.node)
            visitBelow(*root_.node, visit);
    }

    /// Aborts if an invariant does not hold. `Summary` must be comparable. O(n).
    void checkInvariants() const {
        if (root_.node)
            checkBelow(root_, true);
    }

private:
    static constexpr std::uint32_t leafCapacity = Traits::leafCapacity;
    static constexpr std::uint32_t branchCapacity = 16;

    struct Node {
        /// 0 for a leaf.
        std::uint32_t height = 0;
        std::uint32_t count = 0;
    };
    struct Leaf : Node {
        std::array<Element, leafCapacity> elements{};
        std::span<const Element> view() const { return {elements.data(), this->count}; }
    };
    struct Entry {
        std::shared_ptr<const Node> node;
        Summary summary{};
    };
    struct Branch : Node {
        std::array<Entry, branchCapacity> entries{};
        std::span<const Entry> view() const { return {entries.data(), this->count}; }
    };
    static const Leaf& leaf(const Node& node) { return static_cast<const Leaf&>(node); }
    static const Branch& branch(const Node& node) { return static_cast<const Branch&>(node); }

    explicit SummaryTree(Entry root) : root_(std::move(root)) {}

    // Making nodes.

    static Entry makeLeaf(std::span<const Element> elements) {
        auto node = std::make_shared<Leaf>();
        node->count = static_cast<std::uint32_t>(elements.size());
        std::copy(elements.begin(), elements.end(), node->elements.begin());
        Summary summary{};
        for (const Element& element : elements)
            summary += Traits::summarize(element);
        return {std::move(node), summary};
    }

    static Entry makeBranch(std::span<const Entry> children) {
        auto node = std::make_shared<Branch>();
        node->height = children.front().node->height + 1;
        node->count = static_cast<std::uint32_t>(children.size());
        std::copy(children.begin(), children.end(), node->entries.begin());
        Summary summary{};
        for (const Entry& child : children)
            summary += child.summary;
        return {std::move(node), summary};
    }

    /// A tree of some children of one node: none, one as it is, or more below a root of their own.
    static SummaryTree ofChildren(std::span<const Entry> children) {
        if (children.empty())
            return {};
        return SummaryTree(children.size() == 1 ? children.front() : makeBranch(children));
    }

    /// Calls `make(first, count)` for as few groups as hold `total` things, of nearly equal size.
    template <class Make>
    static void inGroups(std::size_t total, std::size_t capacity, Make&& make) {
        const std::size_t groups = (total + capacity - 1) / capacity;
        for (std::size_t group = 0; group < groups; ++group) {
            const std::size_t first = total * group / groups;
            make(first, total * (group + 1) / groups - first);
        }
    }

    static std::vector<Entry> leaves(std::span<const Element> elements) {
        std::vector<Entry> made;
        made.reserve(elements.size() / leafCapacity + 1);
        inGroups(elements.size(), leafCapacity, [&](std::size_t first, std::size_t count) {
            made.push_back(makeLeaf(elements.subspan(first, count)));
        });
        return made;
    }

    /// The root over nodes of one height.
    static Entry rootAbove(std::vector<Entry> level) {
        while (level.size() > 1) {
            std::vector<Entry> above;
            above.reserve(level.size() / branchCapacity + 1);
            inGroups(level.size(), branchCapacity, [&](std::size_t first, std::size_t count) {
                above.push_back(makeBranch(std::span(level).subspan(first, count)));
            });
            level = std::move(above);
        }
        return level.front();
    }

    // Joining. What is joined may be underfull as a root may be; the one or two nodes that come out are of the greater
    // height of both, and well filled if there are two.

    struct Joined {
        Entry first;
        Entry second;
    };

    static Joined join(const Entry& left, const Entry& right) {
        const std::uint32_t leftHeight = left.node->height;
        const std::uint32_t rightHeight = right.node->height;
        if (leftHeight == rightHeight)
            return leftHeight == 0 ? joinLeaves(left, right) : joinBranches(left, right);

        std::array<Entry, branchCapacity + 1> children;
        std::size_t count = 0;
        const auto add = [&](const Entry& child) {
            if (child.node)
                children[count++] = child;
        };
        if (leftHeight > rightHeight) {
            const auto view = branch(*left.node).view();
            for (const Entry& child : view.first(view.size() - 1))
                add(child);
            const Joined end = join(view.back(), right);
            add(end.first);
            add(end.second);
        } else {
            const auto view = branch(*right.node).view();
            const Joined start = join(left, view.front());
            add(start.first);
            add(start.second);
            for (const Entry& child : view.subspan(1))
                add(child);
        }
        return spreadBranches(std::span(children).first(count));
    }

    static Joined joinLeaves(const Entry& left, const Entry& right) {
        const auto front = leaf(*left.node).view();
        const auto back = leaf(*right.node).view();
        if (isWellFilled(front.size(), leafCapacity) && isWellFilled(back.size(), leafCapacity))
            return {left, right};
        std::array<Element, std::size_t{2} * leafCapacity> elements;
        std::copy(front.begin(), front.end(), elements.begin());
        std::copy(back.begin(), back.end(), elements.begin() + static_cast<std::ptrdiff_t>(front.size()));
        const std::size_t count = front.size() + back.size();
        const auto all = std::span<const Element>(elements).first(count);
        if (count <= leafCapacity)
            return {makeLeaf(all), {}};
        return {makeLeaf(all.first(count / 2)), makeLeaf(all.subspan(count / 2))};
    }

    static Joined joinBranches(const Entry& left, const Entry& right) {
        const auto front = branch(*left.node).view();
        const auto back = branch(*right.node).view();
        if (isWellFilled(front.size(), branchCapacity) && isWellFilled(back.size(), branchCapacity))
            return {left, right};
        // The children at the seam are well filled: an underfull root has well filled children.
        std::array<Entry, std::size_t{2} * branchCapacity> children;
        std::copy(front.begin(), front.end(), children.begin());
        std::copy(back.begin(), back.end(), children.begin() + static_cast<std::ptrdiff_t>(front.size()));
        return spreadBranches(std::span(children).first(front.size() + back.size()));
    }

    static Joined spreadBranches(std::span<const Entry> children) {
        if (children.size() <= branchCapacity)
            return {makeBranch(children), {}};
        return {makeBranch(children.first(children.size() / 2)), makeBranch(children.subspan(children.size() / 2))};
    }

    static bool isWellFilled(std::size_t count, std::uint32_t capacity) { return count >= capacity / 2; }

    // Splitting.

    template <class Measure>
    static std::pair<SummaryTree, SummaryTree> splitBelow(const Entry& entry, Measure measure, std::int64_t rest) {
        if (entry.node->height == 0) {
            const auto elements = leaf(*entry.node).view();
            std::size_t index = 0;
            for (; index < elements.size(); ++index) {
                const std::int64_t here = measure(Traits::summarize(elements[index]));
                if (here > rest)
                    break;
                rest -= here;
            }
            return {SummaryTree(elements.first(index)), SummaryTree(elements.subspan(index))};
        }
        const auto children = branch(*entry.node).view();
        std::size_t index = 0;
        for (;; ++index) {
            const std::int64_t here = measure(children[index].summary);
            if (here > rest)
                break;
            rest -= here;
        }
        auto [front, back] = splitBelow(children[index], measure, rest);
        return {ofChildren(children.first(index)) + front, back + ofChildren(children.subspan(index + 1))};
    }

    static Entry dropFirst(const Entry& entry) {
        if (entry.node->height == 0) {
            const auto elements = leaf(*entry.node).view();
            return elements.size() == 1 ? Entry{} : makeLeaf(elements.subspan(1));
        }
        const auto children = branch(*entry.node).view();
        return (SummaryTree(dropFirst(children.front())) + ofChildren(children.subspan(1))).root_;
    }
    static Entry dropLast(const Entry& entry) {
        if (entry.node->height == 0) {
            const auto elements = leaf(*entry.node).view();
            return elements.size() == 1 ? Entry{} : makeLeaf(elements.first(elements.size() - 1));
        }
        const auto children = branch(*entry.node).view();
        return (ofChildren(children.first(children.size() - 1)) + SummaryTree(dropLast(children.back()))).root_;
    }

    // Walks.

    template <class Visit>
    static void visitBelow(const Node& node, Visit& visit) {
        if (node.height == 0)
            for (const Element& element : leaf(node).view())
                visit(element);
        else
            for (const Entry& child : branch(node).view())
                visitBelow(*child.node, visit);
    }

    static void checkBelow(const Entry& entry, bool isRoot) {
        const Node& node = *entry.node;
        Summary sum{};
        if (node.height == 0) {
            require(isRoot ? node.count >= 1 : isWellFilled(node.count, leafCapacity), "a leaf is half full");
            for (const Element& element : leaf(node).view())
                sum += Traits::summarize(element);
        } else {
            require(isRoot ? node.count >= 2 : isWellFilled(node.count, branchCapacity), "a node is half full");
            for (const Entry& child : branch(node).view()) {
                require(child.node->height + 1 == node.height, "all leaves are of the same depth");
                checkBelow(child, false);
                sum += child.summary;
            }
        }
        require(sum == entry.summary, "a summary is the sum over its elements");
    }

    Entry root_;
};

} // namespace quelm
