// What the tree editor announces, and in which order.

#include "Tests/Quelm/Support/EditedTreeTest.h"
#include "Tests/Quelm/Support/TreeEditorLog.h"

#include <optional>

namespace quelm {
namespace {

class TreeEditorEditingSignalsTests : public EditedTreeTest {
protected:
    void listenTo(std::string_view text, const Path& selected) {
        open(text, selected);
        log_.emplace(*editor);
    }
    std::string heard() { return log_->take().toStdString(); }

private:
    std::optional<TreeEditorLog> log_;
};

TEST_F(TreeEditorEditingSignalsTests, WhatStaysAsItIsIsNotAnnounced) {
    listenTo(R"({"a":1})", {0});
    editor->select(node({0}));
    editor->setEditing(std::nullopt);
    editor->move(1);
    editor->changeType(node({0}), NodeKind::number);
    editor->pasteJSON();
    editor->copyPath();
    EXPECT_EQ(heard(), "");
    editor->activate();
    EXPECT_EQ(heard(), "editing");
    editor->activate();
    editor->setEditing(valueOf({0}));
    EXPECT_EQ(heard(), "");
    commit("1", valueOf({0}));
    EXPECT_EQ(heard(), "editing");
}

TEST_F(TreeEditorEditingSignalsTests, AnEditIsAnnouncedWithItsRowsThenSelectionThenAsDone) {
    listenTo("[1,2]", {0});
    editor->remove();
    EXPECT_EQ(heard(), "content, outline, selection, did edit");
    manager->undo();
    EXPECT_EQ(heard(), "content, outline, selection, did edit");
    editor->move(1);
    EXPECT_EQ(heard(), "content, outline, did edit");
    manager->undo();
    manager->redo();
    EXPECT_EQ(heard(), "content, outline, did edit, content, outline, did edit");
}

TEST_F(TreeEditorEditingSignalsTests, AnInsertionIsDoneBeforeItsFieldOpens) {
    listenTo("[[1]]", {0});
    editor->insert(true);
    EXPECT_EQ(heard(), "content, outline, selection, did edit, editing");
    manager->undo();
    EXPECT_EQ(heard(), "content, outline, editing, did edit");
    manager->redo();
    EXPECT_EQ(heard(), "content, outline, did edit");
}

TEST_F(TreeEditorEditingSignalsTests, AFieldIsClosedBeforeItsTextIsEntered) {
    listenTo(R"({"a":1})", {0});
    editor->activate();
    commit("2", valueOf({0}));
    EXPECT_EQ(heard(), "editing, editing, content, outline, did edit");
}

TEST_F(TreeEditorEditingSignalsTests, AToggledBooleanIsAnEdit) {
    listenTo("[true]", {0});
    editor->activate();
    EXPECT_EQ(heard(), "content, outline, did edit");
}

TEST_F(TreeEditorEditingSignalsTests, AnOpenFieldIsToldBeforeAnythingChanges) {
    listenTo("[true,2]", {1});
    editor->activate();
    EXPECT_EQ(heard(), "editing");
    editor->duplicate();
    EXPECT_EQ(heard(), "will edit, content, outline, selection, did edit");
    editor->move(-2);
    EXPECT_EQ(heard(), "will edit, content, outline, did edit");
    select({1});
    editor->activate();
    EXPECT_EQ(heard(), "selection, will edit, content, outline, did edit");
    editor->insert(false);
    EXPECT_EQ(heard(), "will edit, content, outline, selection, did edit, editing");
}

TEST_F(TreeEditorEditingSignalsTests, AFieldOfANodeThatGoesIsAnnouncedAsClosed) {
    listenTo("[[1],2]", {0, 0});
    editor->activate();
    select({0});
    heard();
    editor->remove();
    EXPECT_EQ(heard(), "will edit, content, outline, editing, selection, did edit");
}

TEST_F(TreeEditorEditingSignalsTests, AReloadAnnouncesRowsThenFieldThenSelection) {
    listenTo("[[1]]", {0, 0});
    editor->activate();
    EXPECT_EQ(heard(), "outline, editing");
    editor->toggleExpansion(node({0}), false);
    EXPECT_EQ(heard(), "will edit, outline");
    editor->reload();
    EXPECT_EQ(heard(), "outline, editing, selection");
}

TEST_F(TreeEditorEditingSignalsTests, AReplacedContentAnnouncesRowsThenFieldThenSelection) {
    listenTo(R"({"a":1,"b":2})", {1});
    editor->activate();
    heard();
    document->replaceContent(JSONContent::empty(), manager.get());
    EXPECT_EQ(heard(), "content, outline, editing, selection");
    manager->undo();
    EXPECT_EQ(heard(), "content, outline");
}

TEST_F(TreeEditorEditingSignalsTests, AStepCanBeUndoneOnceItIsAnnounced) {
    listenTo("[1,2]", {0});
    int announcements = 0;
    const auto check = [&] {
        ++announcements;
        EXPECT_EQ(manager->undoActionName(), QStringLiteral("Eliminar"));
        EXPECT_TRUE(document->isModified());
        EXPECT_EQ(editor->selection(), node({0}));
    };
    QObject::connect(editor.get(), &TreeEditor::outlineChanged, check);
    QObject::connect(editor.get(), &TreeEditor::selectionChanged, check);
    QObject::connect(editor.get(), &TreeEditor::didEdit, check);
    editor->remove();
    EXPECT_EQ(announcements, 3);
}

} // namespace
} // namespace quelm
