// What the tree editor copies and pastes.

#include "Tests/Quelm/Support/EditedTreeTest.h"

#include <new>
#include <stdexcept>

namespace quelm {
namespace {

class TreeEditorEditingPasteboardTests : public EditedTreeTest {
protected:
    void expectNothingDone(std::string_view text) const {
        EXPECT_EQ(json(), text);
        EXPECT_FALSE(manager->canUndo());
        EXPECT_FALSE(document->isModified());
    }
};

TEST_F(TreeEditorEditingPasteboardTests, ThePathOfTheSelectionIsCopied) {
    open(R"({"a b":[1,{"c":2}]})", {0, 1, 0});
    editor->copyPath();
    EXPECT_EQ(pasteboard.text(), R"($["a b"][1].c)");
    select({});
    editor->copyPath();
    EXPECT_EQ(pasteboard.text(), "$");
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(TreeEditorEditingPasteboardTests, WithoutASelectionThePathIsThatOfTheTopLevelValue) {
    open("[1]");
    editor->setSelection(std::nullopt);
    editor->copyPath();
    EXPECT_EQ(pasteboard.text(), "$");
    pasteboard.clear();
    select({});
    selectDetachedNode();
    editor->copyPath();
    EXPECT_EQ(pasteboard.text(), "$");
}

TEST_F(TreeEditorEditingPasteboardTests, TheSelectionIsCopiedAsJSON) {
    open(R"({"a":{"z":[1,"ñ"],"b":null}})", {0});
    editor->copyJSON(JSONStyle::compact());
    EXPECT_EQ(pasteboard.text(), R"({"z":[1,"ñ"],"b":null})");
    editor->copyJSON(JSONStyle::pretty(JSONStyle::Indent::tab, true));
    EXPECT_EQ(pasteboard.text(), "{\n\t\"b\": null,\n\t\"z\": [\n\t\t1,\n\t\t\"ñ\"\n\t]\n}\n");
    select({0, 0, 1});
    editor->copyJSON(JSONStyle::compact());
    EXPECT_EQ(pasteboard.text(), "\"ñ\"");
    EXPECT_FALSE(document->isModified());
}

TEST_F(TreeEditorEditingPasteboardTests, JSONIsPastedIntoAContainer) {
    open(R"({"a":[],"b":{}})", {0});
    pasteboard.put(R"( {"x": [1]} )");
    editor->pasteJSON();
    EXPECT_EQ(json(), R"({"a":[{"x":[1]}],"b":{}})");
    EXPECT_EQ(editor->selection(), node({0, 0}));
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Pegar JSON"));
    select({1});
    editor->pasteJSON();
    select({1});
    editor->pasteJSON();
    EXPECT_EQ(json(), R"({"a":[{"x":[1]}],"b":{"pegado":{"x":[1]},"pegado 2":{"x":[1]}}})");
    EXPECT_EQ(rows(), "0+ 1+ 2 1+ 2 2 ");
    checkInvariants();
}

TEST_F(TreeEditorEditingPasteboardTests, JSONIsPastedAfterAScalar) {
    open(R"({"a":1,"b":2})", {0});
    pasteboard.put("true");
    editor->pasteJSON();
    EXPECT_EQ(json(), R"({"a":1,"pegado":true,"b":2})");
    manager->undo();
    EXPECT_EQ(json(), R"({"a":1,"b":2})");
    manager->redo();
    EXPECT_EQ(json(), R"({"a":1,"pegado":true,"b":2})");
    EXPECT_EQ(editor->selection(), node({1}));
}

TEST_F(TreeEditorEditingPasteboardTests, WhatIsCopiedHereCanBePastedHere) {
    open(R"([{"a":[true,null]},{}])", {0});
    editor->copyJSON(JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false));
    select({1});
    editor->pasteJSON();
    EXPECT_EQ(json(), R"([{"a":[true,null]},{"pegado":{"a":[true,null]}}])");
}

TEST_F(TreeEditorEditingPasteboardTests, AByteOrderMarkIsPassedOver) {
    open("[]");
    pasteboard.put("\uFEFF[1]");
    editor->pasteJSON();
    EXPECT_EQ(json(), "[[1]]");
    EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_F(TreeEditorEditingPasteboardTests, NothingIsPastedBesideATopLevelScalar) {
    open("1");
    pasteboard.put("2");
    editor->pasteJSON();
    expectNothingDone("1");
    EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_F(TreeEditorEditingPasteboardTests, AnEmptyPasteboardIsNotWorthAWord) {
    open("[]");
    editor->pasteJSON();
    expectNothingDone("[]");
    EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_F(TreeEditorEditingPasteboardTests, TextThatIsNotJSONIsToldAndChangesNothing) {
    open("[]");
    const JSONTree before = tree();
    pasteboard.put("[1,\n 2");
    editor->pasteJSON();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].startsWith(QStringLiteral("El portapapeles no contiene JSON válido.\nLínea 2, columna 3: ")))
        << errors[0].toStdString();
    expectNothingDone("[]");
    EXPECT_TRUE(tree().isSameValue(before));

    pasteboard.put("");
    editor->pasteJSON();
    EXPECT_EQ(errors.size(), 2);
    editor->onError = nullptr;
    editor->pasteJSON();
    expectNothingDone("[]");
}

/// A pasteboard whose text is too large for this program.
class OversizedPasteboard : public Pasteboard {
public:
    std::optional<TextRope> string() const override { throw std::bad_alloc(); }
    void setString(const TextRope&) override { throw std::length_error("too long"); }
};

TEST_F(TreeEditorEditingPasteboardTests, WhatDoesNotFitIntoMemoryIsTold) {
    open("[1]");
    OversizedPasteboard oversized;
    TreeEditor editor(document, oversized);
    editor.reload();
    editor.pasteJSON();
    editor.onError = [this](const QString& message) { errors.append(message); };
    editor.pasteJSON();
    editor.copyJSON(JSONStyle::compact());
    EXPECT_THAT(errors, testing::ElementsAre(QStringLiteral("No hay memoria suficiente para esta operación.\n"),
                                             QStringLiteral("El documento no admite más nodos ni más texto.\n")));
    expectNothingDone("[1]");
}

} // namespace
} // namespace quelm
