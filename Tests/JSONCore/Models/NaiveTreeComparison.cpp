#include "Tests/JSONCore/Models/NaiveTree.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <ostream>
#include <sstream>

namespace quelm::test {

namespace {

struct Links {
    std::optional<NodeID> parent;
    std::vector<NodeID> children;
    friend bool operator==(const Links&, const Links&) = default;
};

Links linksOf(const JSONTree& tree, NodeID id) {
    Links links{tree.parent(id), {}};
    for (const NodeID child : tree.children(id))
        links.children.push_back(child);
    return links;
}

std::string describe(NodeKind kind, std::string_view key, std::string_view scalar, const Links& links) {
    std::ostringstream text;
    text << nameOf(kind) << " key \"" << key << "\" scalar \"" << scalar << "\" parent "
         << (links.parent ? links.parent->raw : -1) << " children";
    constexpr std::size_t shown = 40;
    for (std::size_t i = 0; i < links.children.size() && i < shown; ++i)
        text << ' ' << links.children[i].raw;
    if (links.children.size() > shown)
        text << " and more, " << links.children.size() << " in all";
    return text.str();
}

} // namespace

void expectSameNodes(const JSONTree& tree, const NaiveTree& model) {
    ASSERT_EQ(tree.storedNodeCount(), model.storedNodeCount());
    ASSERT_EQ(tree.nodeCount(), model.nodeCount());
    for (NodeID id{0}; id.raw < tree.storedNodeCount(); ++id.raw) {
        const NaiveNode& expected = model[id];
        const Links links = linksOf(tree, id);
        const Links expectedLinks{expected.parent, expected.children};
        const bool isSame = tree.kind(id) == expected.kind && tree.key(id) == expected.key &&
                            tree.scalar(id) == expected.scalar && links == expectedLinks &&
                            tree.children(id).size() == static_cast<std::int64_t>(expected.children.size());
        ASSERT_TRUE(isSame) << "node #" << id.raw << "\n  is      "
                            << describe(tree.kind(id), tree.key(id), tree.scalar(id), links) << "\n  must be "
                            << describe(expected.kind, expected.key, expected.scalar, expectedLinks);
    }
}

} // namespace quelm::test
