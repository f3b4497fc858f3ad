#include "Quelm/Documents/DocumentRecorder.h"

#include "Quelm/Documents/ContentConversion.h"
#include "Tests/Quelm/Documents/EditedDocumentTest.h"

#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what it is told, a line each.
class WrittenRecorder : public DocumentRecorder {
public:
    std::vector<std::string> lines;

    std::vector<std::string> take() { return std::exchange(lines, {}); }

private:
    void didEditText(const TextRope& before, const TextRope& after, std::int64_t location, std::int64_t removed,
                     std::int64_t inserted) override {
        lines.push_back(std::to_string(location) + ": " + before.bytes({location, removed}) + " -> " +
                        after.bytes({location, inserted}));
        EXPECT_EQ(before.replacing({location, removed}, after.slice({location, inserted})), after);
    }
    void willEditTree(const JSONTree& tree, const TreeEdit& edit) override {
        const std::string kind = edit.asSetKey()     ? "key"
                                 : edit.asSetValue() ? "value"
                                 : edit.asInsert()   ? "insert"
                                                     : "remove";
        const bool isAttached = tree.parent(edit.id()).has_value();
        lines.push_back(kind + (isAttached ? " " + tree.path(edit.id()) : ""));
    }
    void didEditTree(const JSONTree& tree) override { lines.push_back(std::to_string(tree.nodeCount()) + " nodes"); }
    void didFailToEditTree() override { lines.emplace_back("failed"); }
    void didReplaceContent(const ContentReplacement& replacement, const JSONContent& content) override {
        lines.push_back(std::string(replacement.origin == ContentOrigin::reformatting ? "reformat " : "replace ") +
                        std::to_string(replacement.numberBefore) + " -> " + std::to_string(replacement.number) +
                        (replacement.isReturn ? " again" : "") + (content.text ? " with text" : ""));
    }
    void didChangeMode(EditorMode mode, const JSONContent& content) override {
        lines.emplace_back(mode == EditorMode::tree ? "tree" : "text");
        EXPECT_TRUE(mode == EditorMode::tree ? content.tree.has_value() : content.text.has_value());
    }
    void didChangeModified(bool isModified) override { lines.emplace_back(isModified ? "modified" : "saved"); }
    void didApply() override { lines.emplace_back("applied"); }
};

class DocumentRecorderTests : public EditedDocumentTest {
protected:
    DocumentRecorderTests() { document.setRecorder(&recorder); }
    ~DocumentRecorderTests() override { document.setRecorder(nullptr); }

    void applyAsTree(std::string_view text) {
        Preferences::setInitialMode(Preferences::InitialMode::tree);
        document.apply(contentOf(text));
        recorder.take();
    }

    WrittenRecorder recorder;
};

TEST_F(DocumentRecorderTests, AnEditOfTheTextIsToldInBytes) {
    TextStorage& buffer = edit("[\"añ😀b\"]");
    recorder.take();
    buffer.replaceCharacters({3, 3}, QStringLiteral("é"));
    document.noteTextBufferEdited();
    EXPECT_THAT(recorder.take(), ElementsAre("3: ñ😀 -> é", "modified"));
    buffer.replaceCharacters({0, 0}, QString());
    document.noteTextBufferEdited();
    EXPECT_THAT(recorder.take(), ElementsAre("0:  -> "));
}

TEST_F(DocumentRecorderTests, AttributesAreNoEdits) {
    TextStorage& buffer = edit("[1]");
    recorder.take();
    buffer.setAttributes({0, 1}, TextAttributes{});
    EXPECT_THAT(recorder.lines, IsEmpty());
}

TEST_F(DocumentRecorderTests, AnUndoneEditIsAnEditAndTheSavedStateIsTold) {
    edit("[1");
    recorder.take();
    typeStep(QStringLiteral("]"));
    manager.undo();
    EXPECT_THAT(recorder.take(), ElementsAre("2:  -> ]", "modified", "0: [1] -> [1", "saved"));
}

TEST_F(DocumentRecorderTests, EditsOfABufferThatIsNotTheDocumentsAreNotTold) {
    edit("[1]");
    const std::shared_ptr<TextStorage> old = document.textBuffer();
    document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    recorder.take();
    old->replaceCharacters({0, 1}, QStringLiteral("{"));
    EXPECT_THAT(recorder.lines, IsEmpty());
}

TEST_F(DocumentRecorderTests, EachTreeEditIsToldInTheStateInWhichItIsApplied) {
    applyAsTree("{\"a\": [1, 2, 3]}");
    const JSONTree& tree = *document.content().tree;
    const NodeID list = tree.children(tree.root())[0];
    const NodeID first = tree.children(list)[0];
    const NodeID last = tree.children(list)[2];
    document.applyTreeEdits(
        std::vector{TreeEdit::remove(first), TreeEdit::setValue(last, NodeKind::string, "x"), TreeEdit::setKey(list, "b")});
    EXPECT_THAT(recorder.take(), ElementsAre("remove $.a[0]", "value $.a[1]", "key $.a", "4 nodes", "modified"));
}

TEST_F(DocumentRecorderTests, AFormatIsToldAsSuchAndItsUndoAsAReturn) {
    edit("[1,2]");
    recorder.take();
    const std::int64_t number = document.contentNumber();
    const auto content = ContentConversion::reformat(document.snapshot(), JSONStyle::compact(), {});
    document.replaceContent(*content, &manager, ContentOrigin::reformatting);
    const std::string there = std::to_string(number) + " -> " + std::to_string(number + 1);
    const std::string back = std::to_string(number + 1) + " -> " + std::to_string(number);
    EXPECT_THAT(recorder.take(), ElementsAre("reformat " + there + " with text", "modified"));
    EXPECT_EQ(document.contentNumber(), number + 1);
    manager.undo();
    EXPECT_THAT(recorder.take(), ElementsAre("replace " + back + " again with text", "saved"));
    EXPECT_EQ(document.contentNumber(), number);
    manager.redo();
    EXPECT_THAT(recorder.take(), ElementsAre("replace " + there + " again with text", "modified"));
    // A number is given once.
    manager.undo();
    document.replaceContent(contentOf("3"), nullptr);
    EXPECT_EQ(document.contentNumber(), number + 2);
}

TEST_F(DocumentRecorderTests, AChangeOfTheModeIsToldAndIsNoModification) {
    applyAsTree("[1]");
    bool isDone = false;
    auto task = document.setMode(EditorMode::text, [&](const auto& result) { isDone = result.has_value(); });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    EXPECT_THAT(recorder.take(), ElementsAre("text"));
}

TEST_F(DocumentRecorderTests, AContentThatIsInstalledHasANumberOfItsOwn) {
    applyAsTree("[1]");
    const std::int64_t number = document.contentNumber();
    document.apply(contentOf("[2]"));
    EXPECT_THAT(recorder.take(), ElementsAre("applied"));
    EXPECT_EQ(document.contentNumber(), number + 1);
    document.reload(contentOf("[3]"));
    EXPECT_THAT(recorder.take(), ElementsAre("applied"));
    document.applyUnsaved(contentOf("[4]"), EditorMode::tree);
    EXPECT_THAT(recorder.take(), ElementsAre("modified", "applied"));
}

TEST_F(DocumentRecorderTests, ReloadingKeepsTheEditorWhereTheContentAllows) {
    edit("[1]");
    Preferences::setInitialMode(Preferences::InitialMode::tree);
    document.reload(contentOf("[2]"));
    EXPECT_EQ(document.mode(), EditorMode::text);
    EXPECT_FALSE(document.isModified());
    document.apply(contentOf("[3]"));
    ASSERT_EQ(document.mode(), EditorMode::tree);
    document.reload(contentOf("[3"));
    EXPECT_EQ(document.mode(), EditorMode::text);
}

TEST_F(DocumentRecorderTests, AnUnsavedContentIsModifiedUntilItIsSaved) {
    document.applyUnsaved(contentOf("[1"), EditorMode::text);
    EXPECT_EQ(document.mode(), EditorMode::text);
    EXPECT_TRUE(document.isModified());
    document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    typeStep(QStringLiteral("]"));
    manager.undo();
    EXPECT_TRUE(document.isModified());
    document.noteSaved(document.stateToken().current());
    EXPECT_FALSE(document.isModified());
    document.noteUnsaved();
    EXPECT_TRUE(document.isModified());
    EXPECT_DEATH(document.applyUnsaved(contentOf("[1"), EditorMode::tree), "shown in its mode");
}

} // namespace
} // namespace quelm
