#include "JSONCore/JSONSerializer.h"
#include "Tests/Quelm/Documents/EditedDocumentTest.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

namespace quelm {
namespace {

class JSONDocumentTreeEditsTests : public EditedDocumentTest {
protected:
    void open(std::string_view text) { document.apply(contentOf(text)); }
    const JSONTree& tree() const { return *document.content().tree; }
    NodeID child(std::int64_t index) const { return tree().children(tree().root())[index]; }
    void editWithStep(const std::vector<TreeEdit>& edits) {
        manager.registerUndo<JSONDocument>(
            &document, [this, inverse = document.applyTreeEdits(edits)](JSONDocument&) { editWithStep(inverse); });
    }
    TreeEdit value(std::int64_t index, std::string_view text) const {
        return TreeEdit::setValue(child(index), NodeKind::number, text);
    }
};

TEST_F(JSONDocumentTreeEditsTests, EditsAreAppliedInOrderAndTheirInverseUndoesThem) {
    open("[1,2]");
    const JSONTree before = tree();
    const NodeID first = child(0);
    const std::vector<TreeEdit> edits{value(0, "5"), TreeEdit::remove(first),
                                      TreeEdit::insert(first, tree().root(), 1)};
    const std::vector<TreeEdit> inverse = document.applyTreeEdits(edits);
    EXPECT_EQ(tree(), *contentOf("[2,5]").tree);
    EXPECT_THAT(inverse, testing::ElementsAre(TreeEdit::remove(first), TreeEdit::insert(first, tree().root(), 0),
                                              TreeEdit::setValue(first, NodeKind::number, std::string_view("1"))));
    EXPECT_EQ(document.applyTreeEdits(inverse).size(), 3);
    EXPECT_EQ(tree(), before);
}

TEST_F(JSONDocumentTreeEditsTests, TheTreeIsWhatWouldBeSavedFromThenOn) {
    open("[ 1,2 ]");
    EXPECT_EQ(savedText(), "[ 1,2 ]");
    const JSONStyle style = document.content().style;
    const std::vector<TreeEdit> inverse = document.applyTreeEdits(std::vector{value(1, "3")});
    EXPECT_FALSE(document.content().text);
    EXPECT_FALSE(document.content().parseError);
    EXPECT_EQ(document.content().style, style);
    EXPECT_EQ(savedText(), JSONSerializer::serialize(tree(), std::nullopt, style).view());
    document.applyTreeEdits(inverse);
    EXPECT_FALSE(document.content().text);
    EXPECT_EQ(savedText(), JSONSerializer::serialize(*contentOf("[1,2]").tree, std::nullopt, style).view());
}

TEST_F(JSONDocumentTreeEditsTests, AChangeIsAnnouncedOnceUnderTheSameRevision) {
    open("[1,2]");
    const std::int64_t revision = document.revision();
    const StateToken::Value token = document.stateToken().current();
    int announcements = 0;
    QObject::connect(&document, &JSONDocument::contentChanged, [&] {
        ++announcements;
        EXPECT_EQ(tree(), *contentOf("[5,6]").tree);
        EXPECT_FALSE(document.content().text);
        EXPECT_TRUE(document.isModified());
    });
    QSignalSpy revisions(&document, &JSONDocument::revisionChanged);
    QSignalSpy modes(&document, &JSONDocument::modeChanged);
    document.applyTreeEdits(std::vector{value(0, "5"), value(1, "6")});
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(revisions.count(), 0);
    EXPECT_EQ(modes.count(), 0);
    EXPECT_EQ(document.revision(), revision);
    EXPECT_NE(document.stateToken().current(), token);
}

TEST_F(JSONDocumentTreeEditsTests, APreparedChangeComesBackWithItsInverse) {
    open("[1,2]");
    const NodeID first = child(0);
    const auto applied = document.applyTreeChange([&](JSONTree& tree) { return tree.removeChange(first); });
    ASSERT_TRUE(applied);
    EXPECT_THAT(applied->change.edits, testing::ElementsAre(TreeEdit::remove(first)));
    EXPECT_EQ(applied->change.focus, child(0));
    EXPECT_THAT(applied->inverse, testing::ElementsAre(TreeEdit::insert(first, tree().root(), 0)));
    EXPECT_EQ(tree(), *contentOf("[2]").tree);
}

TEST_F(JSONDocumentTreeEditsTests, WithoutAChangeNothingHappens) {
    open("1");
    const StateToken::Value token = document.stateToken().current();
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    const auto applied = document.applyTreeChange([](JSONTree& tree) { return tree.insertChange(tree.root(), false); });
    EXPECT_FALSE(applied);
    EXPECT_EQ(contents.count(), 0);
    EXPECT_EQ(contentText(), "1");
    EXPECT_EQ(document.stateToken().current(), token);
    EXPECT_FALSE(document.isModified());
    tree().checkInvariants();
}

TEST_F(JSONDocumentTreeEditsTests, AChangeThatCannotBePreparedLeavesNoTrace) {
    open("[1]");
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    const auto failing = [](JSONTree& tree) -> std::optional<TreeChange> {
        tree.addNode(NodeKind::string, {}, "x");
        throw std::length_error("full");
    };
    EXPECT_THROW(document.applyTreeChange(failing), std::length_error);
    EXPECT_EQ(contents.count(), 0);
    EXPECT_EQ(contentText(), "[1]");
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(tree(), *contentOf("[1]").tree);
    tree().checkInvariants();
}

TEST_F(JSONDocumentTreeEditsTests, SnapshotsKeepTheTreeThatTheyWereTakenOf) {
    open("[1,2]");
    const JSONContent first = document.snapshot();
    document.applyTreeEdits(std::vector{value(0, "5")});
    const JSONContent second = document.snapshot();
    document.applyTreeEdits(std::vector{TreeEdit::remove(child(1))});
    EXPECT_EQ(JSONDocument::fileContents(first).view(), "[1,2]");
    EXPECT_EQ(*second.tree, *contentOf("[5,2]").tree);
    EXPECT_EQ(tree(), *contentOf("[5]").tree);
}

TEST_F(JSONDocumentTreeEditsTests, AStepRegisteredRightAfterLeadsBackToTheSavedState) {
    open("[1]");
    editWithStep(std::vector{value(0, "5")});
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(document.isModified());
        manager.undo();
        EXPECT_EQ(tree(), *contentOf("[1]").tree);
        EXPECT_FALSE(document.isModified());
        manager.redo();
        EXPECT_EQ(tree(), *contentOf("[5]").tree);
    }
    document.noteSaved(document.stateToken().current());
    manager.undo();
    EXPECT_TRUE(document.isModified());
}

TEST_F(JSONDocumentTreeEditsTests, ReplacingTheContentAfterAnEditCanBeUndoneToTheEditedTree) {
    open("[1]");
    document.applyTreeEdits(std::vector{value(0, "5")});
    document.replaceContent(contentOf("{}"), &manager);
    EXPECT_EQ(savedText(), "{}");
    manager.undo();
    EXPECT_FALSE(document.content().text);
    EXPECT_EQ(tree(), *contentOf("[5]").tree);
    manager.redo();
    EXPECT_EQ(savedText(), "{}");
}

TEST_F(JSONDocumentTreeEditsTests, ADocumentWithoutATreeTakesNoEdits) {
    open("[1");
    EXPECT_DEATH(document.applyTreeEdits({}), "a tree that is edited is there");
}

} // namespace
} // namespace quelm
