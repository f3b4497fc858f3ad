#include "JSONCore/JSONParser.h"
#include "JSONCore/Storage/BlockMemory.h"
#include "JSONCore/TreeOutline.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace quelm {
namespace {

constexpr std::int64_t largeSize = 1'000'000;
constexpr std::size_t blockSize = 65'536;
/// Of the tree the records of the node, of a new one and of its ancestors and a block of the list of children; of the
/// rows one block and what says where its rows stand; and the directories of all these.
constexpr std::size_t mostCopied = 6 * blockSize;

/// A tree with an array and an object of a million children each, and its rows, all shown.
struct ShownTree {
    JSONTree tree;
    TreeOutline outline;

    NodeID array() const { return tree.children(tree.root())[0]; }
    NodeID object() const { return tree.children(tree.root())[1]; }

    std::vector<TreeEdit> apply(std::span<const TreeEdit> edits) {
        std::vector<TreeEdit> inverse = tree.apply(edits);
        std::vector<TreeEdit> both(edits.begin(), edits.end());
        both.insert(both.end(), inverse.begin(), inverse.end());
        outline.update(both, tree);
        return inverse;
    }
};

ShownTree largeTree() {
    std::string text = "{\"array\":[";
    for (std::int64_t number = 0; number < largeSize; ++number)
        text += number ? ",true" : "true";
    text += "],\"object\":{";
    for (std::int64_t number = 0; number < largeSize; ++number)
        text += (number ? ",\"k" : "\"k") + std::to_string(number) + "\":true";
    text += "}}";
    ShownTree shown{*JSONParser::parse(TextRope(SharedText(text))), {}};
    shown.outline.rebuild(shown.tree);
    shown.outline.setExpanded(shown.tree.root(), true, true, shown.tree);
    return shown;
}

/// A sort of edit of one child of a large container.
struct ChildEdit {
    const char* name;
    std::function<std::optional<TreeChange>(JSONTree& tree, NodeID child)> prepare;
};

const std::vector<ChildEdit>& childEdits() {
    static const std::vector<ChildEdit> edits{
        {"rename", [](JSONTree&, NodeID child) { return TreeChange{{TreeEdit::setKey(child, "otra clave")}, child}; }},
        {"toggle",
         [](JSONTree&, NodeID child) {
             return TreeChange{{TreeEdit::setValue(child, NodeKind::bool_, "false")}, child};
         }},
        {"insert", [](JSONTree& tree, NodeID child) { return tree.insertChange(child, false); }},
        {"insert as last child",
         [](JSONTree& tree, NodeID child) { return tree.insertChange(*tree.parent(child), true); }},
        {"duplicate", [](JSONTree& tree, NodeID child) { return tree.duplicateChange(child); }},
        {"move",
         [](JSONTree& tree, NodeID child) { return tree.moveChange(child, tree.indexInParent(child) == 0 ? 1 : -1); }},
        {"change of type", [](JSONTree& tree, NodeID child) { return tree.kindChange(child, NodeKind::object); }},
        {"remove", [](JSONTree& tree, NodeID child) { return tree.removeChange(child); }},
    };
    return edits;
}

std::size_t bytesCopiedBy(const std::function<void()>& action) {
    const std::size_t before = storageBytesCopied();
    action();
    return storageBytesCopied() - before;
}

enum class Snapshots { none, alive };

/// What making an edit, undoing it and doing it again copy, each beside a snapshot of its own or none. The edit is
/// undone afterwards.
struct Copied {
    std::size_t doing;
    std::size_t undoing;
    std::size_t redoing;
};

Copied copiedBy(const ChildEdit& edit, ShownTree& shown, NodeID child, Snapshots snapshots) {
    std::vector<TreeEdit> edits;
    std::vector<TreeEdit> inverse;
    std::optional<ShownTree> snapshot;
    const auto bytesCopied = [&](const std::function<void()>& action) {
        if (snapshots == Snapshots::alive)
            snapshot = shown;
        return bytesCopiedBy(action);
    };
    const Copied copied{.doing = bytesCopied([&] {
                            edits = edit.prepare(shown.tree, child)->edits;
                            inverse = shown.apply(edits);
                        }),
                        .undoing = bytesCopied([&] { edits = shown.apply(inverse); }),
                        .redoing = bytesCopied([&] { shown.apply(edits); })};
    shown.apply(inverse);
    return copied;
}

/// Does every edit to a child at the front, in the middle and at the end of both containers, and undoes it.
void forEachEdit(const std::function<void(const ChildEdit& edit, ShownTree& shown, NodeID child)>& work) {
    ShownTree shown = largeTree();
    const std::int64_t rows = shown.outline.rowCount();
    for (const NodeID container : {shown.array(), shown.object()}) {
        for (const std::int64_t position : {std::int64_t{0}, largeSize / 2, largeSize - 1}) {
            const NodeID child = shown.tree.children(container)[position];
            for (const ChildEdit& edit : childEdits()) {
                SCOPED_TRACE(std::string(edit.name) + " of child " + std::to_string(position) + " of " +
                             std::string(shown.tree.key(container)));
                work(edit, shown, child);
                ASSERT_EQ(shown.outline.rowCount(), rows);
            }
        }
    }
}

TEST(EditCost, AnEditAmongAMillionChildrenCopiesAHandfulOfBlocksBesideASnapshot) {
    forEachEdit([](const ChildEdit& edit, ShownTree& shown, NodeID child) {
        const Copied copied = copiedBy(edit, shown, child, Snapshots::alive);
        for (const std::size_t bytes : {copied.doing, copied.undoing, copied.redoing}) {
            EXPECT_GT(bytes, 0U);
            EXPECT_LE(bytes, mostCopied);
        }
    });
}

TEST(EditCost, AnEditAmongAMillionChildrenCopiesNothingWithoutASnapshot) {
    forEachEdit([](const ChildEdit& edit, ShownTree& shown, NodeID child) {
        const Copied copied = copiedBy(edit, shown, child, Snapshots::none);
        EXPECT_EQ(copied.doing, 0U);
        EXPECT_EQ(copied.undoing, 0U);
        EXPECT_EQ(copied.redoing, 0U);
    });
}

} // namespace
} // namespace quelm
