#pragma once

#include "JSONCore/TreeEdit.h"
#include "JSONCore/TreeRow.h"
#include "Tests/JSONCore/Models/NaiveTree.h"

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace quelm {
class TreeOutline;
}

namespace quelm::test {

/// What a `TreeOutline` must show, kept as a plain list of finished rows that are replaced a stretch at a
/// time.
class NaiveOutline {
public:
    const std::vector<TreeRow>& rows() const { return rows_; }
    bool isInExpanded(NodeID id) const { return expanded_.contains(id); }
    std::optional<std::int64_t> index(NodeID id) const;

    std::vector<TreeRow> buildRows(NodeID id, std::int64_t depth, const TreeRow::Label& label, bool isDuplicateKey,
                                   const NaiveTree& tree) const;
    void rebuild(const NaiveTree& tree);
    void refresh(NodeID id, const NaiveTree& tree);
    void setExpanded(NodeID id, bool isExpanded, bool recursive, const NaiveTree& tree);
    void reveal(NodeID id, const NaiveTree& tree);
    void update(std::span<const TreeEdit> edits, const NaiveTree& tree);

    /// The rows all made anew, the set of expanded containers as it is.
    void makeRowsAnew(const NaiveTree& tree);

private:
    std::vector<TreeRow> rows_;
    std::set<NodeID> expanded_;
};

/// Fails the test, naming the first difference, unless both have the same rows, field by field and byte by
/// byte, find every row again by its id, and agree which nodes of the store are expanded.
void expectSameRows(const TreeOutline& outline, const JSONTree& tree, const NaiveOutline& model);

} // namespace quelm::test
