#include "Tests/Quelm/EditorWindow/EditorModelTest.h"

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditorModelSwitchingTests : public EditorModelTest {
protected:
    void switchMode(EditorMode mode) {
        model->switchMode(mode);
        wait();
    }
};

TEST_F(EditorModelSwitchingTests, TheModeThatIsShownIsLeftAlone) {
    openTree("[1]");
    model->switchMode(EditorMode::tree);
    EXPECT_FALSE(model->isBusy());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(EditorModelSwitchingTests, ATreeIsShownAsTextAndAsATreeAgain) {
    openTree("[1, 2]");
    switchMode(EditorMode::text);
    EXPECT_EQ(document->mode(), EditorMode::text);
    EXPECT_EQ(savedText(), "[1, 2]");
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(3));
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "mode", "revision", "idle"));

    switchMode(EditorMode::tree);
    EXPECT_EQ(document->mode(), EditorMode::tree);
    EXPECT_TRUE(model->validator().state().isIdle());
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "mode", "revision", "idle"));
    EXPECT_EQ(model->errorMessage(), std::nullopt);
}

TEST_F(EditorModelSwitchingTests, WhatIsTypedBecomesTheTree) {
    openText("[1]");
    type("{\"a\": [true, null]}");
    switchMode(EditorMode::tree);
    EXPECT_EQ(document->mode(), EditorMode::tree);
    EXPECT_EQ(document->content().tree->nodeCount(), 4);
}

TEST_F(EditorModelSwitchingTests, StepsOfOneEditorDoNotSurviveIntoTheOther) {
    openTree("[1, 2]");
    model->tree().reload();
    model->tree().duplicate();
    model->tree().insert(true);
    model->tree().setEditing(std::nullopt);
    ASSERT_TRUE(undoManager.canUndo());
    takeLog();
    switchMode(EditorMode::text);
    EXPECT_FALSE(undoManager.canUndo());
    EXPECT_FALSE(undoManager.canRedo());
    // They are gone when the model says that it is done.
    EXPECT_EQ(log.back(), "idle");

    attachTextBuffer();
    model->format(compact);
    wait();
    ASSERT_TRUE(undoManager.canUndo());
    switchMode(EditorMode::tree);
    EXPECT_FALSE(undoManager.canUndo());
    EXPECT_EQ(log.back(), "idle");
}

TEST_F(EditorModelSwitchingTests, ASwitchNeedsNoUndoManager) {
    openTree("[1]");
    model->setUndoManager(nullptr);
    switchMode(EditorMode::text);
    EXPECT_EQ(document->mode(), EditorMode::text);
}

TEST_F(EditorModelSwitchingTests, TextThatIsNotJSONStaysWithAMessageAndTheCaretAtItsError) {
    openText("[1]");
    type("[1,\n  2 3]");
    switchMode(EditorMode::tree);
    EXPECT_EQ(document->mode(), EditorMode::text);
    EXPECT_EQ(shownText(), "[1,\n  2 3]");
    EXPECT_EQ(message(), "No se puede mostrar como árbol porque el JSON no es válido.\n"
                         "Línea 2, columna 5: Se esperaba ',' o ']'");
    EXPECT_EQ(place(), "2:5");
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "message", "goTo", "idle"));

    // The same again, although it is the same place.
    model->setErrorMessage(std::nullopt);
    takeLog();
    switchMode(EditorMode::tree);
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "message", "goTo", "idle"));
}

TEST_F(EditorModelSwitchingTests, StepsStayWhenTheEditorStays) {
    openText("[1]");
    model->format(pretty);
    wait();
    type("[");
    switchMode(EditorMode::tree);
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Formato"));
}

TEST_F(EditorModelSwitchingTests, WhatIsOpenInAFieldIsHandedInBeforeTheDocumentIsRead) {
    openTree("[1]");
    TreeEditor& tree = model->tree();
    tree.reload();
    tree.select(document->content().tree->children(document->content().tree->root())[0]);
    tree.activate(TreeEditor::Field::value);
    ASSERT_TRUE(tree.editing());
    QObject::connect(&*model, &EditorModel::willReadDocument, &*model, [&tree] {
        tree.commit(SharedText("25"), *tree.editing());
        tree.setEditing(std::nullopt);
    });
    switchMode(EditorMode::text);
    EXPECT_THAT(savedText(), testing::HasSubstr("25"));
    EXPECT_EQ(document->mode(), EditorMode::text);
}

} // namespace
} // namespace quelm
