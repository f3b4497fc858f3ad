#include "JSONCore/JSONTree.h"
#include "JSONCore/Storage/BlockMemory.h"
#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ranges>
#include <thread>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;
using test::written;

constexpr std::size_t blockSize = 65'536;
/// What one edit may copy while a snapshot is alive: the blocks of the records and lists that it touches and
/// the directories that lead to them.
constexpr std::size_t mostCopiedByAnEdit = 6 * blockSize;

constexpr std::int64_t recordCount = 60'000;

/// About 5 MB of records.
std::string records() {
    std::string text = "[";
    for (std::int64_t i = 0; i < recordCount; ++i) {
        text += i ? ",\n" : "";
        text += "{\"id\":" + std::to_string(i) + ",\"name\":\"Registro \\u00e9 número " + std::to_string(i) +
                "\",\"tags\":[\"uno\",\"dos\",true,null],\"nested\":{\"x\":1.5}}";
    }
    return text + "]";
}

std::size_t bytesCopiedBy(const std::function<void()>& action) {
    const std::size_t before = storageBytesCopied();
    action();
    return storageBytesCopied() - before;
}

/// A sort of edit, done to the record at a position.
struct SingleEdit {
    const char* name;
    std::function<void(JSONTree&, std::int64_t position)> apply;
};

const std::vector<SingleEdit>& singleEdits() {
    static const std::vector<SingleEdit> edits{
        {"setValue",
         [](JSONTree& tree, std::int64_t at) {
             tree.apply(TreeEdit::setValue(nodeAt(tree, {at, 0}), NodeKind::string, "nuevo"));
         }},
        {"setKey",
         [](JSONTree& tree, std::int64_t at) { tree.apply(TreeEdit::setKey(nodeAt(tree, {at, 1}), "clave")); }},
        {"insert beside",
         [](JSONTree& tree, std::int64_t at) { tree.apply(tree.insertChange(nodeAt(tree, {at}), false)->edits); }},
        {"insert inside",
         [](JSONTree& tree, std::int64_t at) { tree.apply(tree.insertChange(nodeAt(tree, {at}), true)->edits); }},
        {"move", [](JSONTree& tree,
                    std::int64_t at) { tree.apply(tree.moveChange(nodeAt(tree, {at}), at == 0 ? 1 : -1)->edits); }},
        {"duplicate",
         [](JSONTree& tree, std::int64_t at) { tree.apply(tree.duplicateChange(nodeAt(tree, {at}))->edits); }},
        {"retype",
         [](JSONTree& tree, std::int64_t at) {
             tree.apply(tree.kindChange(nodeAt(tree, {at, 2}), NodeKind::string)->edits);
         }},
        {"remove", [](JSONTree& tree, std::int64_t at) { tree.apply(tree.removeChange(nodeAt(tree, {at}))->edits); }},
    };
    return edits;
}

TEST(JSONTreeCopyOnWrite, CopyingATreeCopiesNothing) {
    const JSONTree tree = parsed(records());
    std::vector<JSONTree> copies;
    EXPECT_EQ(bytesCopiedBy([&] { copies.assign(1'000, tree); }), 0U);
    EXPECT_EQ(copies.back().nodeCount(), tree.nodeCount());
}

TEST(JSONTreeCopyOnWrite, AnEditCopiesTheBlocksItTouchesWhileASnapshotIsAlive) {
    const JSONTree snapshot = parsed(records());
    const std::string text = written(snapshot);
    ASSERT_GT(text.size(), 5'000'000U);
    for (const SingleEdit& edit : singleEdits()) {
        for (const std::int64_t position : {std::int64_t{0}, recordCount / 2, recordCount - 1}) {
            SCOPED_TRACE(std::string(edit.name) + " at " + std::to_string(position));
            JSONTree tree = snapshot;
            const std::size_t copied = bytesCopiedBy([&] { edit.apply(tree, position); });
            EXPECT_GT(copied, 0U);
            EXPECT_LE(copied, mostCopiedByAnEdit);
            EXPECT_FALSE(tree == snapshot);
            EXPECT_EQ(snapshot.children(snapshot.root()).size(), recordCount);
        }
    }
    EXPECT_TRUE(written(snapshot) == text);
    snapshot.checkInvariants();
}

TEST(JSONTreeCopyOnWrite, AnEditCopiesNothingWithoutASnapshot) {
    JSONTree tree = parsed(records());
    // Each edit has records of its own to change.
    std::int64_t apart = 0;
    for (const SingleEdit& edit : singleEdits()) {
        apart += 100;
        for (const std::int64_t position : {apart, recordCount / 2 + apart, recordCount - 10 * apart}) {
            SCOPED_TRACE(std::string(edit.name) + " at " + std::to_string(position));
            EXPECT_EQ(bytesCopiedBy([&] { edit.apply(tree, position); }), 0U);
        }
    }
    tree.checkInvariants();
}

TEST(JSONTreeCopyOnWrite, ASecondEditNearByCopiesNothingMore) {
    JSONTree tree = parsed(records());
    const JSONTree snapshot = tree;
    const NodeID name = nodeAt(tree, {recordCount / 2, 1});
    tree.apply(TreeEdit::setKey(name, "a"));
    EXPECT_EQ(bytesCopiedBy([&] { tree.apply(TreeEdit::setKey(name, "b")); }), 0U);
    EXPECT_EQ(bytesCopiedBy([&] { tree.apply(TreeEdit::setValue(name, NodeKind::null, "")); }), 0U);
    EXPECT_EQ(snapshot.key(name), "name");
}

TEST(JSONTreeCopyOnWrite, NothingIsCopiedOnceTheSnapshotIsGone) {
    JSONTree tree = parsed(records());
    const NodeID name = nodeAt(tree, {recordCount / 2, 1});
    auto snapshot = std::make_unique<const JSONTree>(tree);
    EXPECT_EQ(snapshot->key(name), "name");
    snapshot.reset();
    EXPECT_EQ(bytesCopiedBy([&] { tree.apply(TreeEdit::setKey(name, "a")); }), 0U);
}

TEST(JSONTreeCopyOnWrite, UndoOfEverythingAfterASnapshotRestoresAnEqualTree) {
    JSONTree tree = parsed(records());
    const JSONTree snapshot = tree;
    std::vector<std::vector<TreeEdit>> undo;
    for (std::int64_t position = 0; position < recordCount; position += 1'000)
        undo.push_back(tree.apply(tree.removeChange(nodeAt(tree, {recordCount - 1 - position}))->edits));
    EXPECT_NE(tree, snapshot);
    for (const std::vector<TreeEdit>& edits : std::views::reverse(undo))
        tree.apply(edits);
    EXPECT_EQ(tree, snapshot);
    EXPECT_EQ(tree.nodeCount(), snapshot.nodeCount());
    tree.checkInvariants();
    snapshot.checkInvariants();
}

TEST(JSONTreeCopyOnWrite, ASnapshotMayBeReadOnAnotherThreadWhileTheTreeIsEdited) {
    JSONTree tree = parsed(records());
    const std::string text = written(tree);
    int wrong = 0;
    {
        std::jthread reader([snapshot = tree, &text, &wrong] {
            for (int round = 0; round < 10; ++round)
                wrong += written(snapshot) != text || snapshot.keyOccurrences(nodeAt(snapshot, {5}), "id") != 1;
        });
        for (std::int64_t i = 0; i < 2'000; ++i) {
            const NodeID record = nodeAt(tree, {i * 7'919 % 50'000});
            tree.apply(TreeEdit::setKey(record, "clave " + std::to_string(i)));
            tree.apply(tree.duplicateChange(record)->edits);
            tree.apply(tree.removeChange(record)->edits);
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(tree.children(tree.root()).size(), recordCount);
    tree.checkInvariants();
}

TEST(JSONTreeCopyOnWrite, AnOutlineCopiesTheBlocksOfRowsItTouches) {
    const JSONTree tree = parsed(records());
    TreeOutline outline;
    outline.rebuild(tree);
    outline.setExpanded(tree.root(), true, true, tree);
    for (const std::int64_t position : {std::int64_t{0}, recordCount / 2, recordCount - 1}) {
        SCOPED_TRACE(position);
        const NodeID record = nodeAt(tree, {position});
        const TreeOutline snapshot = outline;
        const std::int64_t rows = snapshot.rowCount();
        EXPECT_LE(bytesCopiedBy([&] { outline.setExpanded(record, false, false, tree); }), mostCopiedByAnEdit);
        EXPECT_LT(outline.rowCount(), rows);
        EXPECT_EQ(snapshot.rowCount(), rows);
        EXPECT_TRUE(snapshot.expanded().contains(record));
        snapshot.checkInvariants(tree);
    }
    EXPECT_EQ(bytesCopiedBy([&] { outline.setExpanded(nodeAt(tree, {7}), false, false, tree); }), 0U);
    outline.checkInvariants(tree);
}

} // namespace
} // namespace quelm
