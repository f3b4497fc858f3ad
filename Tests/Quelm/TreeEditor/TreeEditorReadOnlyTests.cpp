// A tree editor while something else has the document in hand.

#include "Tests/Quelm/Support/EditedTreeTest.h"

#include <QSignalSpy>

#include <functional>
#include <utility>

namespace quelm {
namespace {

class TreeEditorReadOnlyTests : public EditedTreeTest {
protected:
    void openReadOnly(std::string_view text, const Path& selected = {}) {
        open(text, selected);
        editor->setReadOnly(true);
        revision_ = document->revision();
        state_ = document->stateToken().current();
    }
    void expectUntouched(std::string_view text) {
        EXPECT_EQ(json(), text);
        EXPECT_EQ(document->revision(), revision_);
        EXPECT_EQ(document->stateToken().current(), state_);
        EXPECT_FALSE(manager->canUndo());
        EXPECT_EQ(editor->editing(), std::nullopt);
        EXPECT_EQ(errors, QStringList());
        checkInvariants();
    }

private:
    std::int64_t revision_ = 0;
    StateToken::Value state_ = 0;
};

TEST_F(TreeEditorReadOnlyTests, NoOperationChangesTheTree) {
    constexpr std::string_view text = R"({"a":"x","b":[1,2],"c":true})";
    const std::vector<std::pair<const char*, std::function<void(TreeEditor&)>>> operations{
        {"insert after", [](TreeEditor& tree) { tree.insert(false); }},
        {"insert into", [](TreeEditor& tree) { tree.insert(true); }},
        {"duplicate", [](TreeEditor& tree) { tree.duplicate(); }},
        {"move up", [](TreeEditor& tree) { tree.move(-1); }},
        {"move down", [](TreeEditor& tree) { tree.move(1); }},
        {"remove", [](TreeEditor& tree) { tree.remove(); }},
        {"paste", [](TreeEditor& tree) { tree.pasteJSON(); }},
        {"activate", [](TreeEditor& tree) { tree.activate(); }},
        {"activate the key", [](TreeEditor& tree) { tree.activate(Field::key); }},
        {"activate the value", [](TreeEditor& tree) { tree.activate(Field::value); }},
        {"change the type", [](TreeEditor& tree) { tree.changeType(*tree.selection(), NodeKind::null); }},
        {"edit", [](TreeEditor& tree) { tree.setEditing(Editing{*tree.selection(), Field::value}); }},
        {"commit",
         [](TreeEditor& tree) { tree.commit(SharedText(std::string_view("y")), {*tree.selection(), Field::value}); }},
    };
    for (const Path& path : {Path{}, Path{0}, Path{1}, Path{1, 0}, Path{2}}) {
        openReadOnly(text, path);
        pasteboard.put("[7]");
        for (const auto& [name, operation] : operations) {
            operation(*editor);
            SCOPED_TRACE(name);
            ASSERT_NO_FATAL_FAILURE(expectUntouched(text));
            EXPECT_EQ(editor->selection(), node(path));
        }
    }
}

TEST_F(TreeEditorReadOnlyTests, ABadPasteIsNotEvenRead) {
    openReadOnly("[1]");
    pasteboard.put("[1");
    editor->pasteJSON();
    expectUntouched("[1]");
}

TEST_F(TreeEditorReadOnlyTests, SelectingExpandingAndCopyingGoOn) {
    openReadOnly(R"({"a":[1,[2]],"b":{}})", {0});
    EXPECT_TRUE(editor->expandSelection(true));
    EXPECT_TRUE(isExpanded({0, 1}));
    EXPECT_TRUE(editor->copyJSON(JSONStyle::compact()));
    EXPECT_EQ(pasteboard.text(), "[1,[2]]");
    select({0, 1});
    editor->copyPath();
    EXPECT_EQ(pasteboard.text(), "$.a[1]");
    EXPECT_TRUE(editor->collapseOrSelectParent());
    editor->setAllExpanded(true);
    editor->setAllExpanded(false);
    expectUntouched(R"({"a":[1,[2]],"b":{}})");
}

TEST_F(TreeEditorReadOnlyTests, AFieldThatIsOpenIsCancelledWithoutBeingHandedIn) {
    open(R"({"a":"x"})", {0});
    editor->activate();
    ASSERT_EQ(editor->editing(), valueOf({0}));
    const Editing editing = *editor->editing();
    QSignalSpy handIns(editor.get(), &TreeEditor::willEdit);
    QSignalSpy endings(editor.get(), &TreeEditor::editingChanged);
    editor->setReadOnly(true);
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(endings.count(), 1);
    EXPECT_EQ(handIns.count(), 0);
    commit("y", editing);
    EXPECT_EQ(json(), R"({"a":"x"})");
}

TEST_F(TreeEditorReadOnlyTests, WhoeverHearsThatTheFieldIsGoneCannotOpenAnother) {
    open(R"({"a":"x"})", {0});
    editor->activate();
    QObject::connect(editor.get(), &TreeEditor::editingChanged, editor.get(), [this] { editor->activate(); });
    editor->setReadOnly(true);
    EXPECT_EQ(editor->editing(), std::nullopt);
}

TEST_F(TreeEditorReadOnlyTests, AnOperationEndsWhenHandingInItsFieldMakesTheTreeReadOnly) {
    open(R"({"a":"x","b":1})", {0});
    editor->activate();
    QObject::connect(editor.get(), &TreeEditor::willEdit, editor.get(), [this] { editor->setReadOnly(true); });
    editor->remove();
    EXPECT_EQ(json(), R"({"a":"x","b":1})");
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorReadOnlyTests, EachChangeOfItIsAnnouncedOnce) {
    open("[1]");
    QSignalSpy changes(editor.get(), &TreeEditor::isReadOnlyChanged);
    EXPECT_FALSE(editor->isReadOnly());
    editor->setReadOnly(false);
    EXPECT_EQ(changes.count(), 0);
    editor->setReadOnly(true);
    editor->setReadOnly(true);
    EXPECT_TRUE(editor->isReadOnly());
    EXPECT_EQ(changes.count(), 1);
    editor->setReadOnly(false);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(TreeEditorReadOnlyTests, EverythingIsBackAfterwards) {
    open("[1,true]", {1});
    editor->activate();
    ASSERT_EQ(json(), "[1,false]");
    editor->setReadOnly(true);
    editor->activate();
    EXPECT_EQ(json(), "[1,false]");
    editor->setReadOnly(false);
    editor->activate();
    EXPECT_EQ(json(), "[1,true]");
    editor->remove();
    EXPECT_EQ(json(), "[1]");
    manager->undo();
    manager->undo();
    manager->undo();
    EXPECT_EQ(json(), "[1,true]");
}

TEST_F(TreeEditorReadOnlyTests, ItFollowsADocumentThatIsReplacedMeanwhile) {
    openReadOnly("[1]");
    document->apply(JSONContent::fromText(TextRope(SharedText(std::string_view("[2,3]")))));
    EXPECT_EQ(editor->outline().rowCount(), 3);
    EXPECT_TRUE(editor->isReadOnly());
    editor->remove();
    EXPECT_EQ(json(), "[2,3]");
}

} // namespace
} // namespace quelm
