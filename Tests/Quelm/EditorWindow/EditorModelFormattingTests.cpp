#include "Tests/Quelm/EditorWindow/EditorModelTest.h"

// Sanitizers bring an allocator that does not tell what is in use.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#define QUELM_TELLS_MEMORY_IN_USE
#include <malloc.h>
#endif

namespace quelm {
namespace {

using testing::ElementsAre;

class EditorModelFormattingTests : public EditorModelTest {
protected:
    void format(const JSONStyle& style) {
        model->format(style);
        wait();
    }
};

TEST_F(EditorModelFormattingTests, TextIsRewrittenInTheStyle) {
    openText("{\"b\": [1,2]}");
    format(pretty);
    EXPECT_EQ(shownText(), "{\n  \"b\": [\n    1,\n    2\n  ]\n}\n");
    EXPECT_EQ(document->content().style, pretty);
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(4));
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "revision", "idle with steps"));

    format(compact);
    EXPECT_EQ(shownText(), "{\"b\":[1,2]}");
    EXPECT_EQ(savedText(), shownText());
    EXPECT_EQ(document->content().style, compact);
}

TEST_F(EditorModelFormattingTests, KeysAreSortedWhereTheStyleSaysSo) {
    openText("{\"b\":1,\"a\":2}");
    format(JSONStyle::pretty(JSONStyle::Indent::tab, true));
    EXPECT_EQ(shownText(), "{\n\t\"a\": 2,\n\t\"b\": 1\n}\n");
}

TEST_F(EditorModelFormattingTests, UndoRestoresTheTextExactly) {
    const std::string typed = "{ \"b\" :1 ,\r\n\"a\":2}\n\n";
    openText("[]");
    type(typed);
    format(pretty);
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Formato"));
    undoManager.undo();
    EXPECT_EQ(shownText(), typed);
    EXPECT_EQ(savedText(), typed);
    EXPECT_FALSE(undoManager.canUndo());
    EXPECT_EQ(undoManager.redoActionName(), QStringLiteral("Formato"));
    undoManager.redo();
    EXPECT_EQ(shownText(), "{\n  \"b\": 1,\n  \"a\": 2\n}\n");
    EXPECT_EQ(savedText(), shownText());
}

TEST_F(EditorModelFormattingTests, TheValidatorFollowsUndo) {
    openText("[]");
    type("[1 , 2]");
    format(pretty);
    undoManager.undo();
    EXPECT_TRUE(model->validator().state().isIdle());
    clock.advance(std::chrono::milliseconds(0));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->validator().isPending(); }));
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(3));
}

TEST_F(EditorModelFormattingTests, ATreeIsFormattedAsTheTextThatItIsSavedAs) {
    const std::string original = "[1 ,2]";
    openTree(original);
    format(pretty);
    EXPECT_EQ(document->mode(), EditorMode::tree);
    EXPECT_EQ(savedText(), "[\n  1,\n  2\n]\n");
    EXPECT_EQ(document->content().tree->nodeCount(), 3);
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Formato"));
    undoManager.undo();
    EXPECT_EQ(savedText(), original);
    undoManager.redo();
    EXPECT_EQ(savedText(), "[\n  1,\n  2\n]\n");
}

TEST_F(EditorModelFormattingTests, AnEditedTreeIsFormattedAsItIs) {
    openTree("[1]");
    model->tree().reload();
    model->tree().insert(true);
    model->tree().setEditing(std::nullopt);
    format(compact);
    EXPECT_EQ(savedText(), "[1,\"\"]");
    undoManager.undo();
    undoManager.undo();
    EXPECT_EQ(document->content().tree->nodeCount(), 2);
}

TEST_F(EditorModelFormattingTests, WithoutAnUndoManagerItCannotBeUndone) {
    openText("[1, 2]");
    model->setUndoManager(nullptr);
    format(compact);
    EXPECT_EQ(shownText(), "[1,2]");
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(EditorModelFormattingTests, TextThatIsNotJSONStaysWithAMessageAndTheCaretAtItsError) {
    openText("[1]");
    type("{\"a\"\n 1}");
    format(pretty);
    EXPECT_EQ(shownText(), "{\"a\"\n 1}");
    EXPECT_EQ(message(), "No se puede dar formato a un JSON inválido.\n"
                         "Línea 2, columna 2: Se esperaba ':' después de la clave");
    EXPECT_EQ(place(), "2:2");
    EXPECT_FALSE(undoManager.canUndo());
    EXPECT_FALSE(undoManager.isSuspended());
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "message", "goTo", "idle"));
}

TEST_F(EditorModelFormattingTests, OfTwoRequestsInQuickSuccessionOnlyTheFirstCounts) {
    openText("[1, 2]");
    model->format(pretty);
    model->format(compact);
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy"));
    wait();
    EXPECT_EQ(shownText(), "[\n  1,\n  2\n]\n");
    EXPECT_THAT(takeLog(), ElementsAre("revision", "idle with steps"));
    undoManager.undo();
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(EditorModelFormattingTests, TheStepGoesToTheUndoManagerOfTheBeginning) {
    openText("[1, 2]");
    UndoManager other;
    BlockedPool pool;
    model->format(compact);
    model->setUndoManager(&other);
    EXPECT_FALSE(undoManager.isSuspended());
    EXPECT_TRUE(other.isSuspended());
    pool.finish();
    EXPECT_FALSE(other.isSuspended());
    EXPECT_TRUE(undoManager.canUndo());
    EXPECT_FALSE(other.canUndo());
}

#ifdef QUELM_TELLS_MEMORY_IN_USE

/// Large objects are looked up in an index of their keys, which takes memory when it is made.
class EditorModelKeyIndexTests : public EditorModelFormattingTests {
protected:
    static std::string largeObject() {
        std::string text = "{";
        for (int member = 0; member < 20'000; ++member)
            text += (member > 0 ? ", \"clave " : "\"clave ") + std::to_string(member) + "\": 0";
        return text + "}";
    }
    static std::size_t memoryInUse() {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    }
    /// What the first look-up of a key takes in memory that it does not give back.
    static std::int64_t memoryOfLookingUp(const JSONTree& tree) {
        backgroundThreads().waitForDone();
        const std::size_t before = memoryInUse();
        EXPECT_EQ(tree.keyOccurrences(tree.root(), "clave 7"), 1);
        return static_cast<std::int64_t>(memoryInUse()) - static_cast<std::int64_t>(before);
    }
    void expectIndex() {
        const JSONTree& tree = *document->content().tree;
        const std::int64_t ofTheDocument = memoryOfLookingUp(tree);
        // A copy begins without one.
        const JSONTree copy = tree;
        const std::int64_t ofACopy = memoryOfLookingUp(copy);
        EXPECT_GT(ofACopy, 100'000);
        EXPECT_LT(ofTheDocument, ofACopy / 10);
    }
};

TEST_F(EditorModelKeyIndexTests, AFormattedTreeHasTheIndexOfItsKeys) {
    openTree(largeObject());
    format(pretty);
    expectIndex();
}

TEST_F(EditorModelKeyIndexTests, ATreeThatIsShownAfterFormattingTheTextHasTheIndexOfItsKeys) {
    openText(largeObject());
    format(pretty);
    model->switchMode(EditorMode::tree);
    wait();
    ASSERT_EQ(document->mode(), EditorMode::tree);
    expectIndex();
}

#endif

} // namespace
} // namespace quelm
