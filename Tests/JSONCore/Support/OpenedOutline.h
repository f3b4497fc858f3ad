#pragma once

#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/OutlineText.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace quelm::test {

/// A tree and its outline as they are when a document has been opened.
struct Opened {
    explicit Opened(std::string_view text) : tree(parsed(text)) { outline.rebuild(tree); }

    std::string rows() const { return rowsText(outline, tree); }
    NodeID at(std::initializer_list<std::int64_t> positions) const { return nodeAt(tree, positions); }
    void expand(std::initializer_list<std::int64_t> positions) {
        outline.setExpanded(at(positions), true, false, tree);
    }
    void collapse(std::initializer_list<std::int64_t> positions) {
        outline.setExpanded(at(positions), false, false, tree);
    }
    void expandAll(std::initializer_list<std::int64_t> positions) {
        outline.setExpanded(at(positions), true, true, tree);
    }
    void collapseAll(std::initializer_list<std::int64_t> positions) {
        outline.setExpanded(at(positions), false, true, tree);
    }

    JSONTree tree;
    TreeOutline outline;
};

} // namespace quelm::test
