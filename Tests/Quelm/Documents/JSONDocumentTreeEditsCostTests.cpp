#include "JSONCore/Storage/BlockMemory.h"
#include "Quelm/Documents/JSONDocument.h"
#include "TextCore/SharedText.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace quelm {
namespace {

constexpr std::int64_t members = 300'000;
constexpr std::size_t blockSize = 65'536;
/// The records of the node, of a new one and of its ancestors, a block of the list of children, and directories.
constexpr std::size_t mostCopied = 5 * blockSize;

std::size_t bytesCopiedBy(const std::function<void()>& action) {
    const std::size_t before = storageBytesCopied();
    action();
    return storageBytesCopied() - before;
}

class JSONDocumentTreeEditsCost : public testing::Test {
protected:
    JSONDocumentTreeEditsCost() {
        std::string text = "{";
        for (std::int64_t number = 0; number < members; ++number)
            text += (number ? ",\"k" : "\"k") + std::to_string(number) + "\":true";
        document_.setContent(JSONContent::fromText(TextRope(SharedText(text + "}"))));
    }

    const JSONTree& tree() const { return *document_.content().tree; }

    /// What a user may do to a member.
    std::vector<std::function<std::optional<TreeChange>(JSONTree&)>> changesOf(NodeID child) const {
        return {[child](JSONTree&) { return TreeChange{{TreeEdit::setKey(child, "otra")}, child}; },
                [child](JSONTree&) { return TreeChange{{TreeEdit::setValue(child, NodeKind::bool_, "false")}, child}; },
                [child](JSONTree& tree) { return tree.insertChange(child, false); },
                [child](JSONTree& tree) { return tree.duplicateChange(child); },
                [child](JSONTree& tree) { return tree.moveChange(child, tree.indexInParent(child) == 0 ? 1 : -1); },
                [child](JSONTree& tree) { return tree.kindChange(child, NodeKind::array); },
                [child](JSONTree& tree) { return tree.removeChange(child); }};
    }

    /// Makes each change at each end and in the middle, undoes it, does it again and undoes it for good; gives what
    /// each of the first three steps copied to `check`. `begin` is called before each step.
    void forEachStep(const std::function<void()>& begin, const std::function<void(std::size_t)>& check) {
        for (const std::int64_t position : {std::int64_t{0}, members / 2, members - 1}) {
            const NodeID child = tree().children(tree().root())[position];
            std::size_t number = 0;
            for (const auto& change : changesOf(child)) {
                SCOPED_TRACE("change " + std::to_string(number++) + " of member " + std::to_string(position));
                const auto step = [&](const std::function<void()>& action) {
                    begin();
                    check(bytesCopiedBy(action));
                };
                std::vector<TreeEdit> edits;
                step([&] { edits = document_.applyTreeChange(change)->inverse; });
                step([&] { edits = document_.applyTreeEdits(edits); });
                step([&] { edits = document_.applyTreeEdits(edits); });
                document_.applyTreeEdits(edits);
            }
        }
        EXPECT_EQ(tree().nodeCount(), members + 1);
        tree().checkInvariants();
    }

    JSONDocument document_;
};

TEST_F(JSONDocumentTreeEditsCost, AnEditAndItsUndoCopyNothingWhileNobodyElseHasTheTree) {
    forEachStep([] {}, [](std::size_t copied) { EXPECT_EQ(copied, 0U); });
}

TEST_F(JSONDocumentTreeEditsCost, AnEditAndItsUndoCopyAHandfulOfBlocksBesideASnapshot) {
    std::optional<JSONContent> snapshot;
    forEachStep([&] { snapshot = document_.snapshot(); },
                [](std::size_t copied) {
                    EXPECT_GT(copied, 0U);
                    EXPECT_LE(copied, mostCopied);
                });
}

TEST_F(JSONDocumentTreeEditsCost, ASnapshotOutlivesEditsUnchanged) {
    const JSONContent snapshot = document_.snapshot();
    const NodeID first = tree().children(tree().root()).front();
    for (const auto& change : changesOf(first))
        document_.applyTreeChange(change);
    EXPECT_EQ(snapshot.tree->key(first), "k0");
    EXPECT_EQ(snapshot.tree->scalar(first), "true");
    EXPECT_EQ(snapshot.tree->nodeCount(), members + 1);
    snapshot.tree->checkInvariants();
}

} // namespace
} // namespace quelm
