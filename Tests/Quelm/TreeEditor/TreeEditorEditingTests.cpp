// Keys and values edited in place.

#include "Tests/Quelm/Support/EditedTreeTest.h"

#include <QSignalSpy>

namespace quelm {
namespace {

class TreeEditorEditingTests : public EditedTreeTest {
protected:
    /// What `activate` opens on that node.
    std::optional<Editing> activated(const Path& path, std::optional<Field> field) {
        editor->setEditing(std::nullopt);
        select(path);
        editor->activate(field);
        return editor->editing();
    }
    void expectUnchanged(std::string_view text) const {
        EXPECT_EQ(json(), text);
        EXPECT_FALSE(manager->canUndo());
        EXPECT_FALSE(document->isModified());
    }
};

TEST_F(TreeEditorEditingTests, WithoutAFieldScalarsOpenTheirValueAndTheRestTheirKey) {
    open(R"({"s":"x","n":1,"z":null,"o":{},"a":[]})");
    EXPECT_EQ(activated({0}, std::nullopt), valueOf({0}));
    EXPECT_EQ(activated({1}, std::nullopt), valueOf({1}));
    EXPECT_EQ(activated({2}, std::nullopt), keyOf({2}));
    EXPECT_EQ(activated({3}, std::nullopt), keyOf({3}));
    EXPECT_EQ(activated({4}, std::nullopt), keyOf({4}));
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingTests, WhatHasNoKeyDoesNotOpenIt) {
    open(R"([null,{},[],"x"])");
    for (const Path& path : {Path{}, Path{0}, Path{1}, Path{2}})
        EXPECT_EQ(activated(path, std::nullopt), std::nullopt);
    EXPECT_EQ(activated({3}, Field::key), std::nullopt);
    EXPECT_EQ(activated({}, Field::key), std::nullopt);
    EXPECT_EQ(activated({3}, std::nullopt), valueOf({3}));
}

TEST_F(TreeEditorEditingTests, TheTopLevelScalarOpensItsValue) {
    open("12");
    EXPECT_EQ(activated({}, std::nullopt), valueOf({}));
    EXPECT_EQ(activated({}, Field::key), std::nullopt);
}

TEST_F(TreeEditorEditingTests, AFieldThatIsAskedForIsOpened) {
    open(R"({"s":"x","z":null,"o":{}})");
    EXPECT_EQ(activated({0}, Field::key), keyOf({0}));
    EXPECT_EQ(activated({0}, Field::value), valueOf({0}));
    EXPECT_EQ(activated({1}, Field::value), valueOf({1}));
    EXPECT_EQ(activated({2}, Field::value), valueOf({2}));
}

TEST_F(TreeEditorEditingTests, ABooleanTogglesWithoutAField) {
    open(R"({"b":true})", {0});
    editor->activate();
    EXPECT_EQ(json(), R"({"b":false})");
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Editar valor"));
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(editor->selection(), node({0}));
    editor->activate(Field::value);
    EXPECT_EQ(json(), R"({"b":true})");
    EXPECT_EQ(editor->editing(), std::nullopt);
    editor->activate(Field::key);
    EXPECT_EQ(editor->editing(), keyOf({0}));
    manager->undo();
    manager->undo();
    EXPECT_EQ(json(), R"({"b":true})");
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingTests, ABooleanWithAnyOtherTextBecomesTrue) {
    open("[true]", {0});
    document->applyTreeEdits(std::vector{TreeEdit::setValue(node({0}), NodeKind::bool_, std::string_view("TRUE"))});
    editor->activate();
    EXPECT_EQ(json(), "[true]");
}

TEST_F(TreeEditorEditingTests, NothingIsActivatedWithoutASelection) {
    open("[true,1]");
    editor->setSelection(std::nullopt);
    editor->activate();
    editor->activate(Field::value);
    EXPECT_EQ(editor->editing(), std::nullopt);
    expectUnchanged("[true,1]");
}

TEST_F(TreeEditorEditingTests, AFieldThatOpensOutOfSightIsRevealed) {
    open(R"([[{"a":1}]])", {0, 0, 0});
    EXPECT_EQ(rows(), "0+ 1 ");
    QSignalSpy outlines(editor.get(), &TreeEditor::outlineChanged);
    editor->activate();
    EXPECT_EQ(rows(), "0+ 1+ 2+ 3 ");
    EXPECT_EQ(outlines.count(), 1);
    EXPECT_EQ(editor->editing(), valueOf({0, 0, 0}));
    checkInvariants();
}

TEST_F(TreeEditorEditingTests, CommittingAValueIsOneStep) {
    open(R"({"n":1})", {0});
    enter("-2.50e3", Field::value);
    EXPECT_EQ(json(), R"({"n":-2.50e3})");
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(editor->selection(), node({0}));
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Editar valor"));
    manager->undo();
    EXPECT_EQ(json(), R"({"n":1})");
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingTests, CommittingAKeyIsOneStep) {
    open(R"({"a":{"b":1}})", {0});
    enter("ñ", Field::key);
    EXPECT_EQ(json(), R"({"ñ":{"b":1}})");
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Renombrar clave"));
    manager->undo();
    EXPECT_EQ(json(), R"({"a":{"b":1}})");
    EXPECT_EQ(manager->redoActionName(), QStringLiteral("Renombrar clave"));
}

TEST_F(TreeEditorEditingTests, AnUnchangedTextIsNoStep) {
    open(R"({"a":"x"})", {0});
    enter("x", Field::value);
    enter("a", Field::key);
    EXPECT_EQ(editor->editing(), std::nullopt);
    expectUnchanged(R"({"a":"x"})");
}

TEST_F(TreeEditorEditingTests, TheSameTextInOtherBytesIsAChange) {
    open("{\"\u00E9\":\"\u00E9\"}", {0});
    enter("e\u0301", Field::value);
    EXPECT_EQ(json(), "{\"\u00E9\":\"e\u0301\"}");
    enter("e\u0301", Field::key);
    EXPECT_EQ(json(), "{\"e\u0301\":\"e\u0301\"}");
    manager->undo();
    manager->undo();
    EXPECT_EQ(json(), "{\"\u00E9\":\"\u00E9\"}");
    manager->redo();
    EXPECT_EQ(json(), "{\"\u00E9\":\"e\u0301\"}");
}

TEST_F(TreeEditorEditingTests, AnInvalidValueIsDroppedAndTheFieldCloses) {
    open(R"({"n":1,"b":true,"z":null,"o":{}})");
    for (std::int64_t index = 0; index < 4; ++index) {
        select({index});
        editor->setEditing(valueOf({index}));
        commit("abc", valueOf({index}));
        EXPECT_EQ(editor->editing(), std::nullopt) << index;
    }
    expectUnchanged(R"({"n":1,"b":true,"z":null,"o":{}})");
    EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_F(TreeEditorEditingTests, AnEmptyNumberIsInvalidAnEmptyStringIsNot) {
    open(R"([1,"x"])", {0});
    enter("", Field::value);
    expectUnchanged(R"([1,"x"])");
    select({1});
    enter("", Field::value);
    EXPECT_EQ(json(), R"([1,""])");
}

TEST_F(TreeEditorEditingTests, AnyKeyIsAccepted) {
    open(R"({"a":1,"b":2})", {0});
    enter("b", Field::key);
    EXPECT_EQ(json(), R"({"b":1,"b":2})");
    EXPECT_TRUE(editor->outline().row(1, tree()).isDuplicateKey);
    EXPECT_TRUE(editor->outline().row(2, tree()).isDuplicateKey);
    enter("", Field::key);
    EXPECT_EQ(json(), R"({"":1,"b":2})");
    EXPECT_FALSE(editor->outline().row(2, tree()).isDuplicateKey);
    manager->undo();
    EXPECT_TRUE(editor->outline().row(2, tree()).isDuplicateKey);
}

TEST_F(TreeEditorEditingTests, ASecondCommitChangesNothing) {
    open(R"(["x"])", {0});
    editor->activate();
    const Editing editing = *editor->editing();
    commit("y", editing);
    commit("z", editing);
    EXPECT_EQ(json(), R"(["y"])");
    manager->undo();
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingTests, ACommitOfAnotherFieldThanTheOpenOneIsIgnored) {
    open(R"({"a":"x","b":"y"})", {0});
    editor->activate(Field::key);
    commit("z", valueOf({0}));
    commit("z", keyOf({1}));
    EXPECT_EQ(editor->editing(), keyOf({0}));
    expectUnchanged(R"({"a":"x","b":"y"})");
}

TEST_F(TreeEditorEditingTests, ACancelledFieldCommitsNothing) {
    open(R"(["x"])", {0});
    editor->activate();
    const Editing editing = *editor->editing();
    editor->setEditing(std::nullopt);
    commit("y", editing);
    expectUnchanged(R"(["x"])");
}

TEST_F(TreeEditorEditingTests, ACommitSelectsItsNodeAndBringsItIntoSight) {
    open(R"([["x"],1])", {0, 0});
    editor->activate();
    const Editing editing = *editor->editing();
    editor->toggleExpansion(node({0}), false);
    select({1});
    commit("y", editing);
    EXPECT_EQ(editor->selection(), node({0, 0}));
    EXPECT_TRUE(isExpanded({0}));
    checkInvariants();
}

TEST_F(TreeEditorEditingTests, AReloadDropsAnOpenField) {
    open(R"(["x"])", {0});
    editor->activate();
    const Editing editing = *editor->editing();
    QSignalSpy changes(editor.get(), &TreeEditor::editingChanged);
    editor->reload();
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(changes.count(), 1);
    commit("y", editing);
    expectUnchanged(R"(["x"])");
}

TEST_F(TreeEditorEditingTests, AFieldGoesWithItsNode) {
    open(R"([["x"],1])", {0, 0});
    editor->activate();
    select({0});
    editor->remove();
    EXPECT_EQ(editor->editing(), std::nullopt);
    manager->undo();
    select({0, 0});
    editor->activate();
    manager->redo();
    EXPECT_EQ(editor->editing(), std::nullopt);
}

TEST_F(TreeEditorEditingTests, AFieldStaysWhileOtherNodesChange) {
    open(R"(["x",1])", {0});
    editor->activate();
    QSignalSpy changes(editor.get(), &TreeEditor::editingChanged);
    select({1});
    editor->duplicate();
    manager->undo();
    EXPECT_EQ(editor->editing(), valueOf({0}));
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(TreeEditorEditingTests, ACommitIsJudgedByTheKindThatTheNodeHasByThen) {
    open(R"(["x"])", {0});
    editor->activate();
    editor->changeType(node({0}), NodeKind::number);
    EXPECT_EQ(json(), "[0]");
    ASSERT_TRUE(editor->editing());
    commit("abc", *editor->editing());
    EXPECT_EQ(json(), "[0]");
}

} // namespace
} // namespace quelm
