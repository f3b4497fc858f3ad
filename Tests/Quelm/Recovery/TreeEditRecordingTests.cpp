#include "Quelm/Recovery/TreeEditRecording.h"

#include "JSONCore/JSONContent.h"
#include "Tests/Quelm/Recovery/RecordLines.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

class TreeEditRecordingTests : public testing::Test {
protected:
    std::string line() { return lineOf(encodedEdits(recording.take())); }
    void apply(const TreeEdit& edit) {
        recording.add(tree, edit, 1);
        tree.apply(edit);
    }
    NodeID child(std::int64_t index) const { return tree.children(tree.root())[index]; }

    JSONTree tree = *JSONContent::fromText(TextRope(SharedText(std::string_view("[1,2,3]")))).tree;
    DetachedNumbers numbers{1};
    TreeEditRecording recording{numbers};
};

TEST_F(TreeEditRecordingTests, EditsThatWereTakenBackLeaveNothing) {
    const NodeID first = child(0);
    apply(TreeEdit::remove(first));
    EXPECT_EQ(line(), "tree remove 0.0 as 1");
    apply(TreeEdit::insert(first, tree.root(), 0));
    apply(TreeEdit::remove(child(1)));
    // As a list that fails is taken back.
    recording.drop();
    EXPECT_TRUE(recording.isEmpty());
    tree.detach(first);
    apply(TreeEdit::insert(first, tree.root(), 1));
    EXPECT_EQ(line(), "tree attach 1 at 0[1]");
}

TEST_F(TreeEditRecordingTests, ALargeSubtreeIsWrittenAsItWasWhenItWasAttached) {
    const NodeID list = tree.addNode(NodeKind::array, {}, {});
    for (int number = 0; number < 2000; ++number)
        tree.attach(tree.addNode(NodeKind::number, {}, "7"), list, number);
    apply(TreeEdit::insert(list, tree.root(), 3));
    const std::vector<PendingNodeEdit> edits = recording.take();
    ASSERT_TRUE(std::holds_alternative<PendingInsert>(edits.front()));
    tree.apply(TreeEdit::setValue(tree.children(list)[0], NodeKind::string, "later"));
    std::string json = "[7";
    for (int number = 1; number < 2000; ++number)
        json += ",7";
    EXPECT_EQ(lineOf(encodedEdits(edits)), "tree insert '': " + json + "] at 0[3]");
}

TEST_F(TreeEditRecordingTests, NumbersOfOneContentAreNotThoseOfAnother) {
    const NodeID first = child(0);
    apply(TreeEdit::remove(first));
    recording.take();
    recording.add(tree, TreeEdit::insert(first, tree.root(), 0), 2);
    EXPECT_EQ(line(), "tree insert '': 1 at 0[0]");
}

} // namespace
} // namespace quelm
