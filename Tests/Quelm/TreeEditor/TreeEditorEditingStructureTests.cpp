// Nodes inserted, duplicated, moved, removed and given another type.

#include "Tests/Quelm/Support/EditedTreeTest.h"

namespace quelm {
namespace {

class TreeEditorEditingStructureTests : public EditedTreeTest {
protected:
    void expectNothingDone(std::string_view text) const {
        EXPECT_EQ(json(), text);
        EXPECT_FALSE(manager->canUndo());
        EXPECT_FALSE(document->isModified());
        EXPECT_THAT(errors, testing::IsEmpty());
    }
};

TEST_F(TreeEditorEditingStructureTests, AMemberIsInsertedAfterTheSelectionAndItsKeyEdited) {
    open(R"({"a":[1],"b":2})", {0});
    editor->insert(false);
    EXPECT_EQ(json(), R"({"a":[1],"clave":"","b":2})");
    EXPECT_EQ(editor->selection(), node({1}));
    EXPECT_EQ(editor->editing(), keyOf({1}));
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Insertar"));
    EXPECT_EQ(rows(), "0+ 1 1 1 ");
}

TEST_F(TreeEditorEditingStructureTests, AnElementIsInsertedAfterTheSelectionAndItsValueEdited) {
    open("[1,2]", {0});
    editor->insert(false);
    EXPECT_EQ(json(), R"([1,"",2])");
    EXPECT_EQ(editor->editing(), valueOf({1}));
}

TEST_F(TreeEditorEditingStructureTests, AChildIsInsertedLastAndInSight) {
    open(R"([[1],{"clave":0}])", {0});
    editor->insert(true);
    EXPECT_EQ(json(), R"([[1,""],{"clave":0}])");
    EXPECT_EQ(editor->editing(), valueOf({0, 1}));
    EXPECT_TRUE(isExpanded({0}));
    select({1});
    editor->insert(true);
    EXPECT_EQ(json(), R"([[1,""],{"clave":0,"clave 2":""}])");
    EXPECT_EQ(editor->editing(), keyOf({1, 1}));
    EXPECT_EQ(rows(), "0+ 1+ 2 2 1+ 2 2 ");
    checkInvariants();
}

TEST_F(TreeEditorEditingStructureTests, AChildOfAScalarIsInsertedAfterIt) {
    open("[1,2]", {0});
    editor->insert(true);
    EXPECT_EQ(json(), R"([1,"",2])");
}

TEST_F(TreeEditorEditingStructureTests, NextToTheTopLevelContainerMeansInside) {
    open("{}");
    editor->insert(false);
    EXPECT_EQ(json(), R"({"clave":""})");
    EXPECT_EQ(editor->editing(), keyOf({0}));
}

TEST_F(TreeEditorEditingStructureTests, ATopLevelScalarTakesNoChildrenOrSiblings) {
    open("1");
    editor->insert(false);
    editor->insert(true);
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(editor->selection(), node({}));
    expectNothingDone("1");
}

TEST_F(TreeEditorEditingStructureTests, ADuplicateStandsAfterItsSourceUnderAKeyOfItsOwn) {
    open(R"({"a":{"b":[1]},"c":2})", {0});
    editor->duplicate();
    EXPECT_EQ(json(), R"({"a":{"b":[1]},"a copia":{"b":[1]},"c":2})");
    EXPECT_EQ(editor->selection(), node({1}));
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Duplicar"));
    select({0});
    editor->duplicate();
    EXPECT_EQ(json(), R"({"a":{"b":[1]},"a copia 2":{"b":[1]},"a copia":{"b":[1]},"c":2})");
}

TEST_F(TreeEditorEditingStructureTests, MovingStopsAtTheFirstAndAtTheLastPlace) {
    open("[1,2,3]", {0});
    editor->move(-1);
    expectNothingDone("[1,2,3]");
    editor->move(1);
    EXPECT_EQ(json(), "[2,1,3]");
    EXPECT_EQ(editor->selection(), node({1}));
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Mover"));
    editor->move(1);
    EXPECT_EQ(json(), "[2,3,1]");
    editor->move(1);
    editor->move(3);
    editor->move(0);
    EXPECT_EQ(json(), "[2,3,1]");
    editor->move(-2);
    EXPECT_EQ(json(), "[1,2,3]");
    for (int steps = 0; steps < 3; ++steps)
        manager->undo();
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingStructureTests, AMovedContainerTakesItsOpenRowsAlong) {
    open("[[1,[2]],3]", {0});
    editor->expandSelection(true);
    EXPECT_EQ(rows(), "0+ 1+ 2 2+ 3 1 ");
    editor->move(1);
    EXPECT_EQ(rows(), "0+ 1 1+ 2 2+ 3 ");
    manager->undo();
    EXPECT_EQ(rows(), "0+ 1+ 2 2+ 3 1 ");
    checkInvariants();
}

TEST_F(TreeEditorEditingStructureTests, RemovingGoesOnToTheNextThePreviousOrTheParent) {
    open("[1,[2],3]", {1});
    editor->remove();
    EXPECT_EQ(json(), "[1,3]");
    EXPECT_EQ(editor->selection(), node({1}));
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Eliminar"));
    editor->remove();
    EXPECT_EQ(json(), "[1]");
    EXPECT_EQ(editor->selection(), node({0}));
    editor->remove();
    EXPECT_EQ(json(), "[]");
    EXPECT_EQ(editor->selection(), node({}));
    EXPECT_EQ(rows(), "0+ ");
}

TEST_F(TreeEditorEditingStructureTests, TheTopLevelValueIsNeitherRemovedMovedNorDuplicated) {
    open(R"({"a":1})");
    editor->remove();
    editor->move(1);
    editor->move(-1);
    editor->duplicate();
    EXPECT_EQ(editor->selection(), node({}));
    expectNothingDone(R"({"a":1})");
}

TEST_F(TreeEditorEditingStructureTests, AScalarOfAnotherTypeIsTheSameNode) {
    open(R"({"a":"12"})", {0});
    const NodeID id = node({0});
    editor->changeType(id, NodeKind::number);
    EXPECT_EQ(json(), R"({"a":12})");
    EXPECT_EQ(node({0}), id);
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Cambiar tipo"));
    editor->changeType(id, NodeKind::number);
    manager->undo();
    EXPECT_EQ(json(), R"({"a":"12"})");
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingStructureTests, AContainerOfAnotherTypeIsANewEmptyNode) {
    open(R"({"a":{"b":1},"c":2})", {0});
    editor->expandSelection(false);
    const NodeID id = node({0});
    editor->changeType(id, NodeKind::array);
    EXPECT_EQ(json(), R"({"a":[],"c":2})");
    EXPECT_NE(node({0}), id);
    EXPECT_EQ(editor->selection(), node({0}));
    EXPECT_FALSE(editor->isLinked(id));
    manager->undo();
    EXPECT_EQ(json(), R"({"a":{"b":1},"c":2})");
    EXPECT_EQ(editor->selection(), id);
    EXPECT_EQ(rows(), "0+ 1+ 2 1 ");
    checkInvariants();
}

TEST_F(TreeEditorEditingStructureTests, TheTopLevelValueTakesAnotherType) {
    open(R"({"a":1})");
    const NodeID id = node({});
    editor->changeType(id, NodeKind::array);
    EXPECT_EQ(json(), "[]");
    EXPECT_EQ(rows(), "0+ ");
    EXPECT_EQ(editor->selection(), node({}));
    editor->insert(true);
    EXPECT_EQ(json(), R"([""])");
    EXPECT_EQ(rows(), "0+ 1 ");
    manager->undo();
    manager->undo();
    EXPECT_EQ(json(), R"({"a":1})");
    EXPECT_EQ(rows(), "0+ 1 ");
    EXPECT_EQ(editor->selection(), id);
    checkInvariants();
}

TEST_F(TreeEditorEditingStructureTests, TheTypeChangesOfTheNodeThatIsMeantWhateverIsSelected) {
    open("[1,2]", {0});
    editor->changeType(node({1}), NodeKind::string);
    EXPECT_EQ(json(), R"([1,"2"])");
    EXPECT_EQ(editor->selection(), node({1}));
    editor->setSelection(std::nullopt);
    editor->changeType(node({0}), NodeKind::string);
    EXPECT_EQ(json(), R"(["1","2"])");
    EXPECT_EQ(editor->selection(), node({0}));
}

TEST_F(TreeEditorEditingStructureTests, AFocusOutOfSightIsRevealed) {
    open("[[[1,2]],3]", {0, 0, 0});
    EXPECT_EQ(rows(), "0+ 1 1 ");
    editor->move(1);
    EXPECT_EQ(rows(), "0+ 1+ 2+ 3 3 1 ");
    editor->setAllExpanded(false);
    manager->undo();
    EXPECT_EQ(rows(), "0+ 1+ 2+ 3 3 1 ");
    checkInvariants();
}

TEST_F(TreeEditorEditingStructureTests, MarksOfDuplicateKeysFollowTheMembers) {
    open(R"({"a":1,"b":2})", {1});
    enter("a", Field::key);
    const auto isMarked = [this](std::int64_t row) { return editor->outline().row(row, tree()).isDuplicateKey; };
    EXPECT_TRUE(isMarked(1));
    editor->remove();
    EXPECT_FALSE(isMarked(1));
    manager->undo();
    EXPECT_TRUE(isMarked(1));
    EXPECT_TRUE(isMarked(2));
}

TEST_F(TreeEditorEditingStructureTests, WithoutASelectionNothingIsDone) {
    open("[[1],2]");
    editor->setSelection(std::nullopt);
    pasteboard.put("1");
    editor->insert(false);
    editor->insert(true);
    editor->duplicate();
    editor->move(1);
    editor->remove();
    editor->pasteJSON();
    editor->copyJSON(JSONStyle::compact());
    EXPECT_EQ(pasteboard.text(), "1");
    EXPECT_EQ(editor->editing(), std::nullopt);
    expectNothingDone("[[1],2]");
}

} // namespace
} // namespace quelm
