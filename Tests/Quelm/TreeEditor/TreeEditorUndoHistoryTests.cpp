// Steps of the tree editor in line with others, and the ends that a line of steps can come to.

#include "Tests/Quelm/Support/EditedTreeTest.h"

#include <QSignalSpy>

namespace quelm {
namespace {

class TreeEditorUndoHistoryTests : public EditedTreeTest {
protected:
    /// The content written anew, as the formatting of a tree makes it: with a text and a tree of its own.
    void format(const JSONStyle& style) {
        JSONContent content = JSONContent::fromText(JSONSerializer::serializeToString(tree(), std::nullopt, style));
        content.style = style;
        document->replaceContent(std::move(content), manager.get());
    }
    void save() { document->noteSaved(document->stateToken().current()); }

    /// Everything that can be asked for, with that node selected.
    void tryEverythingOn(NodeID id) {
        pasteboard.put("[0]");
        const auto select = [&] { editor->select(id); };
        select();
        editor->insert(true);
        editor->insert(false);
        editor->duplicate();
        editor->move(1);
        editor->move(-1);
        editor->remove();
        editor->pasteJSON();
        editor->activate();
        editor->activate(Field::key);
        editor->activate(Field::value);
        for (const NodeKind kind : allNodeKinds)
            editor->changeType(id, kind);
        for (const Field field : {Field::key, Field::value}) {
            editor->setEditing(Editing{id, field});
            commit("5", {id, field});
        }
        editor->toggleExpansion(id, true);
        editor->toggleExpansion(id, false);
        EXPECT_FALSE(editor->expandSelection(true));
        EXPECT_FALSE(editor->collapseOrSelectParent());
        editor->copyJSON(JSONStyle::compact());
        EXPECT_EQ(pasteboard.text(), "[0]");
        EXPECT_EQ(editor->selection(), id);
        EXPECT_EQ(editor->editing(), std::nullopt);
    }
};

TEST_F(TreeEditorUndoHistoryTests, StepsAreTakenBackInTheirOrder) {
    open("[]");
    editor->insert(true);
    commit("uno", *editor->editing());
    editor->duplicate();
    editor->move(-1);
    enter("dos", Field::value);
    editor->changeType(*editor->selection(), NodeKind::array);
    editor->insert(true);
    const std::vector<std::string> states{"[]",
                                          R"([""])",
                                          R"(["uno"])",
                                          R"(["uno","uno"])",
                                          R"(["uno","uno"])",
                                          R"(["dos","uno"])",
                                          R"([[],"uno"])",
                                          R"([[""],"uno"])"};
    for (int round = 0; round < 2; ++round) {
        for (std::size_t state = states.size(); state-- > 0;) {
            EXPECT_EQ(json(), states[state]);
            EXPECT_EQ(document->isModified(), state != 0);
            checkInvariants();
            manager->undo();
        }
        for (const std::string& state : states) {
            EXPECT_EQ(json(), state);
            checkInvariants();
            manager->redo();
        }
    }
}

TEST_F(TreeEditorUndoHistoryTests, ADocumentIsModifiedExceptInTheStateThatWasSaved) {
    open("[1,2]", {0});
    QSignalSpy changes(document.get(), &JSONDocument::isModifiedChanged);
    editor->remove();
    EXPECT_TRUE(document->isModified());
    save();
    EXPECT_FALSE(document->isModified());
    manager->undo();
    EXPECT_TRUE(document->isModified());
    manager->redo();
    EXPECT_FALSE(document->isModified());
    select({0});
    editor->duplicate();
    EXPECT_TRUE(document->isModified());
    manager->undo();
    EXPECT_FALSE(document->isModified());
    EXPECT_EQ(changes.count(), 6);
    manager->undo();
    editor->duplicate();
    EXPECT_TRUE(document->isModified());
    manager->undo();
    EXPECT_TRUE(document->isModified());
}

TEST_F(TreeEditorUndoHistoryTests, AnEditAfterAnUndoDropsWhatCouldBeRedone) {
    open("[1,2]", {0});
    editor->remove();
    manager->undo();
    select({1});
    editor->remove();
    EXPECT_FALSE(manager->canRedo());
    manager->undo();
    EXPECT_EQ(json(), "[1,2]");
}

TEST_F(TreeEditorUndoHistoryTests, EditsAndFormattingShareOneLine) {
    open("[1, 2]", {0});
    editor->duplicate();
    format(JSONStyle::pretty(JSONStyle::Indent::tab, false));
    select({2});
    editor->remove();
    EXPECT_EQ(saved(), "[\n\t1,\n\t1\n]\n");

    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(manager->undoActionName(), QStringLiteral("Eliminar"));
        manager->undo();
        EXPECT_EQ(saved(), "[\n\t1,\n\t1,\n\t2\n]\n");
        EXPECT_EQ(manager->undoActionName(), QStringLiteral("Formato"));
        manager->undo();
        EXPECT_EQ(json(), "[1,1,2]");
        EXPECT_EQ(editor->outlineRevision(), document->revision());
        checkInvariants();
        manager->undo();
        EXPECT_EQ(json(), "[1,2]");
        EXPECT_FALSE(document->isModified());
        EXPECT_FALSE(manager->canUndo());
        checkInvariants();
        manager->redo();
        EXPECT_EQ(json(), "[1,1,2]");
        manager->redo();
        EXPECT_EQ(json(), "[1,1,2]");
        EXPECT_EQ(saved(), "[\n\t1,\n\t1,\n\t2\n]\n");
        manager->redo();
        EXPECT_EQ(saved(), "[\n\t1,\n\t1\n]\n");
        EXPECT_FALSE(manager->canRedo());
        checkInvariants();
    }
}

TEST_F(TreeEditorUndoHistoryTests, FormattingAnEditedTreeTwiceAndBack) {
    open(R"({"a":1})", {0});
    enter("2", Field::value);
    document->replaceContent(document->content(), manager.get());
    format(JSONStyle::compact());
    manager->undo();
    manager->undo();
    EXPECT_EQ(json(), R"({"a":2})");
    manager->redo();
    manager->redo();
    EXPECT_EQ(saved(), R"({"a":2})");
    for (int step = 0; step < 3; ++step)
        manager->undo();
    EXPECT_EQ(json(), R"({"a":1})");
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorUndoHistoryTests, NothingIsDoneToANodeThatWasTakenBack) {
    for (const std::string_view text : {R"({"a":[1,{}]})", "[1,[2]]"}) {
        open(text);
        const NodeID detached = selectDetachedNode();
        const QString redo = manager->redoActionName();
        QSignalSpy edits(editor.get(), &TreeEditor::didEdit);
        QSignalSpy contents(document.get(), &JSONDocument::contentChanged);
        tryEverythingOn(detached);
        EXPECT_EQ(json(), text);
        EXPECT_EQ(edits.count(), 0);
        EXPECT_EQ(contents.count(), 0);
        EXPECT_FALSE(document->isModified());
        EXPECT_EQ(manager->redoActionName(), redo);
        checkInvariants();
        manager->redo();
        EXPECT_TRUE(editor->isLinked(detached));
    }
}

TEST_F(TreeEditorUndoHistoryTests, NothingIsDoneBelowANodeThatWasTakenBack) {
    open("[]");
    pasteboard.put(R"({"a":{"b":[1]}})");
    editor->pasteJSON();
    const NodeID below = node({0, 0, 0, 0});
    manager->undo();
    EXPECT_FALSE(editor->isLinked(below));
    tryEverythingOn(below);
    tryEverythingOn(*tree().parent(below));
    EXPECT_EQ(json(), "[]");
    EXPECT_TRUE(manager->canRedo());
    manager->redo();
    EXPECT_EQ(json(), R"([{"a":{"b":[1]}}])");
    checkInvariants();
}

TEST_F(TreeEditorUndoHistoryTests, NothingIsDoneToTheHolderOrToIdsThatNoNodeHas) {
    open("[1]", {0});
    format(JSONStyle::compact());
    editor->duplicate();
    const NodeID later = node({1});
    manager->undo();
    manager->undo();
    for (const NodeID id : {later, NodeID{static_cast<std::int32_t>(tree().storedNodeCount())}, NodeID{1'000'000},
                            NodeID{-1}, JSONTree::holder}) {
        tryEverythingOn(id);
        EXPECT_EQ(json(), "[1]") << id.raw;
        EXPECT_FALSE(document->isModified());
    }
    checkInvariants();
}

TEST_F(TreeEditorUndoHistoryTests, WhatIsSelectedInANewContentIsThere) {
    open("[1]", {0});
    format(JSONStyle::compact());
    editor->duplicate();
    editor->duplicate();
    const NodeID late = *editor->selection();
    for (int step = 0; step < 3; ++step)
        manager->undo();
    editor->select(late);
    editor->reload();
    EXPECT_EQ(editor->selection(), node({}));
    manager->redo();
    EXPECT_TRUE(editor->isLinked(*editor->selection()));
}

TEST_F(TreeEditorUndoHistoryTests, AReloadedFileStartsANewLine) {
    open("[1,2]", {1});
    // As the window does it.
    QObject::connect(document.get(), &JSONDocument::didApply, manager.get(), &UndoManager::removeAllActions);
    editor->duplicate();
    manager->undo();
    editor->remove();
    document->apply(JSONContent::fromText(TextRope(SharedText(std::string_view("{}")))));
    EXPECT_FALSE(manager->canUndo());
    EXPECT_FALSE(manager->canRedo());
    EXPECT_FALSE(document->isModified());
    EXPECT_EQ(editor->selection(), node({}));
    editor->insert(true);
    manager->undo();
    EXPECT_EQ(json(), "{}");
    EXPECT_FALSE(document->isModified());
    checkInvariants();
}

TEST_F(TreeEditorUndoHistoryTests, AStepThatIsTakenWhileTheTextIsShownDoesNothing) {
    open("[1]", {0});
    editor->duplicate();
    document->apply(JSONContent::fromText(TextRope(SharedText(std::string_view("[1")))));
    manager->undo();
    EXPECT_EQ(saved(), "[1");
    EXPECT_FALSE(manager->canUndo());
    EXPECT_FALSE(manager->canRedo());
}

TEST_F(TreeEditorUndoHistoryTests, StepsGoWithTheEditor) {
    open("[1]", {0});
    editor->duplicate();
    EXPECT_TRUE(manager->canUndo());
    editor.reset();
    EXPECT_FALSE(manager->canUndo());
    manager->undo();
    EXPECT_EQ(json(), "[1,1]");
}

TEST_F(TreeEditorUndoHistoryTests, AnotherUndoManagerTakesTheStepsFromThenOn) {
    open("[1]", {0});
    UndoManager other;
    editor->setUndoManager(&other);
    EXPECT_EQ(editor->undoManager(), &other);
    editor->duplicate();
    EXPECT_FALSE(manager->canUndo());
    other.undo();
    EXPECT_EQ(json(), "[1]");
    other.redo();
    EXPECT_EQ(json(), "[1,1]");
}

TEST_F(TreeEditorUndoHistoryTests, AFieldIsCommittedByWhoShowsItBeforeAnotherOperation) {
    open(R"({"a":"x"})", {0});
    editor->activate();
    QObject::connect(editor.get(), &TreeEditor::willEdit, editor.get(), [this] { commit("y", *editor->editing()); });
    editor->duplicate();
    EXPECT_EQ(json(), R"({"a":"y","a copia":"y"})");
    EXPECT_EQ(editor->selection(), node({1}));
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Duplicar"));
    manager->undo();
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Editar valor"));
    manager->undo();
    EXPECT_EQ(json(), R"({"a":"x"})");
    EXPECT_FALSE(manager->canUndo());
}

} // namespace
} // namespace quelm
