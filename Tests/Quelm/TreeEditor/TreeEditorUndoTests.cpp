// Every operation undone and redone.

#include "Tests/Quelm/Support/EditedTreeTest.h"

#include <functional>
#include <optional>

namespace quelm {
namespace {

using Path = std::vector<std::int64_t>;

struct Operation {
    const char* name;
    const char* actionName;
    const char* before;
    Path selected;
    std::function<void(TreeEditor&)> perform;
    const char* after;
    /// What is selected afterwards, in the tree as it is by then. Absent where the selection stays as it was.
    Path selectedAfter;
    std::optional<Path> selectedAfterUndo;
    std::optional<Path> selectedAfterRedo;
};

const char* const document = R"({"a":{"b":[1,true]},"c":"x"})";

void enterText(TreeEditor& editor, TreeEditor::Field field, std::string_view text) {
    editor.activate(field);
    if (editor.editing())
        editor.commit(SharedText(text), *editor.editing());
}

const std::vector<Operation> operations{
    {"InsertBeside",
     "Insertar",
     document,
     {0},
     [](TreeEditor& editor) { editor.insert(false); },
     R"({"a":{"b":[1,true]},"clave":"","c":"x"})",
     {1},
     std::nullopt,
     Path{1}},
    {"InsertInside",
     "Insertar",
     document,
     {0, 0},
     [](TreeEditor& editor) { editor.insert(true); },
     R"({"a":{"b":[1,true,""]},"c":"x"})",
     {0, 0, 2},
     std::nullopt,
     Path{0, 0, 2}},
    {"Duplicate",
     "Duplicar",
     document,
     {0},
     [](TreeEditor& editor) { editor.duplicate(); },
     R"({"a":{"b":[1,true]},"a copia":{"b":[1,true]},"c":"x"})",
     {1},
     std::nullopt,
     Path{1}},
    {"Move",
     "Mover",
     document,
     {1},
     [](TreeEditor& editor) { editor.move(-1); },
     R"({"c":"x","a":{"b":[1,true]}})",
     {0},
     Path{1},
     Path{0}},
    {"Remove",
     "Eliminar",
     document,
     {0},
     [](TreeEditor& editor) { editor.remove(); },
     R"({"c":"x"})",
     {0},
     Path{0},
     std::nullopt},
    {"RemoveTheOnlyChild",
     "Eliminar",
     document,
     {0, 0},
     [](TreeEditor& editor) { editor.remove(); },
     R"({"a":{},"c":"x"})",
     {0},
     Path{0, 0},
     std::nullopt},
    {"ChangeTheTypeOfAScalar",
     "Cambiar tipo",
     document,
     {0, 0, 0},
     [](TreeEditor& editor) { editor.changeType(*editor.selection(), NodeKind::string); },
     R"({"a":{"b":["1",true]},"c":"x"})",
     {0, 0, 0},
     Path{0, 0, 0},
     Path{0, 0, 0}},
    {"ChangeTheTypeOfAContainer",
     "Cambiar tipo",
     document,
     {0, 0},
     [](TreeEditor& editor) { editor.changeType(*editor.selection(), NodeKind::number); },
     R"({"a":{"b":0},"c":"x"})",
     {0, 0},
     Path{0, 0},
     Path{0, 0}},
    {"ChangeTheTypeOfTheTopLevelValue",
     "Cambiar tipo",
     document,
     {},
     [](TreeEditor& editor) { editor.changeType(*editor.selection(), NodeKind::null); },
     "null",
     {},
     Path{},
     Path{}},
    {"MakeAScalarTopLevelValueAContainer",
     "Cambiar tipo",
     "5",
     {},
     [](TreeEditor& editor) { editor.changeType(*editor.selection(), NodeKind::array); },
     "[]",
     {},
     Path{},
     Path{}},
    {"Paste",
     "Pegar JSON",
     document,
     {0, 0},
     [](TreeEditor& editor) { editor.pasteJSON(); },
     R"({"a":{"b":[1,true,{"p":[0]}]},"c":"x"})",
     {0, 0, 2},
     std::nullopt,
     Path{0, 0, 2}},
    {"RenameAKey",
     "Renombrar clave",
     document,
     {0, 0},
     [](TreeEditor& editor) { enterText(editor, TreeEditor::Field::key, "ñ"); },
     R"({"a":{"ñ":[1,true]},"c":"x"})",
     {0, 0},
     Path{0, 0},
     Path{0, 0}},
    {"EditAValue",
     "Editar valor",
     document,
     {1},
     [](TreeEditor& editor) { enterText(editor, TreeEditor::Field::value, "y\n"); },
     R"({"a":{"b":[1,true]},"c":"y\n"})",
     {1},
     Path{1},
     Path{1}},
    {"ToggleABoolean",
     "Editar valor",
     document,
     {0, 0, 1},
     [](TreeEditor& editor) { editor.activate(); },
     R"({"a":{"b":[1,false]},"c":"x"})",
     {0, 0, 1},
     Path{0, 0, 1},
     Path{0, 0, 1}},
};

class TreeEditorUndoTests : public EditedTreeTest, public testing::WithParamInterface<Operation> {
protected:
    void SetUp() override {
        open(GetParam().before);
        editor->setAllExpanded(true);
        select(GetParam().selected);
        pasteboard.put(R"({"p":[0]})");
    }
    void expectSelected(const std::optional<Path>& path, std::optional<NodeID> otherwise) const {
        EXPECT_EQ(editor->selection(), path ? node(*path) : otherwise);
    }
};

TEST_P(TreeEditorUndoTests, UndoTakesItBackAndRedoMakesItAgain) {
    const Operation& operation = GetParam();
    const JSONTree before = tree();
    const std::string rowsBefore = rows();
    const QString name = QString::fromUtf8(operation.actionName);

    operation.perform(*editor);
    EXPECT_EQ(json(), operation.after);
    EXPECT_EQ(editor->selection(), node(operation.selectedAfter));
    EXPECT_EQ(manager->undoActionName(), name);
    EXPECT_TRUE(document->isModified());
    checkInvariants();
    editor->setEditing(std::nullopt);
    const JSONTree after = tree();
    const std::string rowsAfter = rows();

    for (int round = 0; round < 3; ++round) {
        const auto selectedBeforeUndo = editor->selection();
        manager->undo();
        EXPECT_EQ(tree(), before);
        EXPECT_EQ(rows(), rowsBefore);
        EXPECT_FALSE(document->isModified());
        EXPECT_FALSE(manager->canUndo());
        EXPECT_EQ(manager->redoActionName(), name);
        expectSelected(operation.selectedAfterUndo, selectedBeforeUndo);
        checkInvariants();

        const auto selectedBeforeRedo = editor->selection();
        manager->redo();
        EXPECT_EQ(tree(), after);
        EXPECT_EQ(rows(), rowsAfter);
        EXPECT_TRUE(document->isModified());
        EXPECT_FALSE(manager->canRedo());
        EXPECT_EQ(manager->undoActionName(), name);
        expectSelected(operation.selectedAfterRedo, selectedBeforeRedo);
        checkInvariants();
    }
    EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_P(TreeEditorUndoTests, UndoBringsBackIntoSightWhatItChanges) {
    const Operation& operation = GetParam();
    operation.perform(*editor);
    editor->setEditing(std::nullopt);
    editor->setAllExpanded(false);
    manager->undo();
    checkInvariants();
    if (operation.selectedAfterUndo) {
        EXPECT_TRUE(editor->outline().index(node(*operation.selectedAfterUndo)));
    }
    editor->setAllExpanded(false);
    manager->redo();
    checkInvariants();
    if (operation.selectedAfterRedo) {
        EXPECT_TRUE(editor->outline().index(node(*operation.selectedAfterRedo)));
    }
    EXPECT_EQ(json(), operation.after);
}

TEST_P(TreeEditorUndoTests, WithoutAnUndoManagerItIsMadeForGood) {
    editor->setUndoManager(nullptr);
    GetParam().perform(*editor);
    EXPECT_EQ(json(), GetParam().after);
    EXPECT_FALSE(manager->canUndo());
    EXPECT_TRUE(document->isModified());
    checkInvariants();
}

TEST_P(TreeEditorUndoTests, AnUndoManagerThatIsGoneIsNone) {
    manager.reset();
    EXPECT_EQ(editor->undoManager(), nullptr);
    GetParam().perform(*editor);
    EXPECT_EQ(json(), GetParam().after);
    EXPECT_TRUE(document->isModified());
    checkInvariants();
}

TEST_P(TreeEditorUndoTests, InATextModeDocumentNothingIsDone) {
    document->apply(JSONContent::fromText(TextRope(SharedText(std::string_view("[1")))));
    ASSERT_EQ(document->mode(), EditorMode::text);
    const auto selection = editor->selection();
    editor->activate();
    GetParam().perform(*editor);
    EXPECT_EQ(editor->selection(), selection);
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(saved(), "[1");
    EXPECT_FALSE(document->isModified());
    EXPECT_FALSE(manager->canUndo());
}

INSTANTIATE_TEST_SUITE_P(Operations, TreeEditorUndoTests, testing::ValuesIn(operations),
                         [](const auto& operation) { return std::string(operation.param.name); });

} // namespace
} // namespace quelm
