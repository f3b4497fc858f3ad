#include "Tests/Quelm/Documents/EditedDocumentTest.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace quelm {
namespace {

class JSONDocumentEditingTests : public EditedDocumentTest {};

TEST_F(JSONDocumentEditingTests, ADocumentHasNoTextBufferUntilOneIsAttached) {
    EXPECT_EQ(document.textBuffer(), nullptr);
    EXPECT_FALSE(document.isTextBufferEdited());
    document.commitTextBuffer();
    document.noteTextBufferEdited();
    document.commitTextBuffer();
    EXPECT_TRUE(document.content().tree);
    edit("[1]");
    EXPECT_FALSE(document.isTextBufferEdited());
}

TEST_F(JSONDocumentEditingTests, ASnapshotHasWhatWasTyped) {
    edit("[1");
    type(QStringLiteral(", 2] ñ"));
    EXPECT_TRUE(document.isTextBufferEdited());
    EXPECT_EQ(contentText(), "[1");
    EXPECT_EQ(savedText(), "[1, 2] ñ");
    EXPECT_FALSE(document.isTextBufferEdited());
    type(QStringLiteral("!"));
    EXPECT_EQ(savedText(), "[1, 2] ñ!");
}

TEST_F(JSONDocumentEditingTests, TypingDropsWhatWasKnownOfTheTextAndCommittingTakesTheNewOne) {
    edit("{\"a\": 1}");
    ASSERT_TRUE(document.content().tree);
    const JSONStyle style = document.content().style;
    const std::int64_t revision = document.revision();
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    QSignalSpy revisions(&document, &JSONDocument::revisionChanged);
    type(QStringLiteral(" "));
    EXPECT_EQ(contentText(), "{\"a\": 1}");
    EXPECT_FALSE(document.content().tree);
    EXPECT_EQ(contents.count(), 1);
    const StateToken::Value token = document.stateToken().current();
    document.commitTextBuffer();
    EXPECT_EQ(contentText(), "{\"a\": 1} ");
    EXPECT_FALSE(document.content().tree);
    EXPECT_FALSE(document.content().parseError);
    EXPECT_EQ(document.content().style, style);
    EXPECT_EQ(contents.count(), 2);
    EXPECT_EQ(revisions.count(), 0);
    EXPECT_EQ(document.revision(), revision);
    EXPECT_EQ(document.stateToken().current(), token);
    document.commitTextBuffer();
    EXPECT_EQ(contents.count(), 2);
}

TEST_F(JSONDocumentEditingTests, CommittingDropsTheErrorOfTheOldText) {
    edit("[1");
    ASSERT_TRUE(document.content().parseError);
    type(QStringLiteral("]"));
    document.commitTextBuffer();
    EXPECT_FALSE(document.content().parseError);
}

TEST_F(JSONDocumentEditingTests, CommittingSharesTheTextInsteadOfCopyingIt) {
    const TextStorage& buffer = edit("[1]");
    type(QStringLiteral(" "));
    document.commitTextBuffer();
    EXPECT_TRUE(document.content().text->isSameValue(buffer.text()));
}

TEST_F(JSONDocumentEditingTests, ABufferThatWasNotEditedIsNotCommitted) {
    TextStorage& buffer = edit("[1]");
    buffer.replaceCharacters({0, 1}, QStringLiteral("{"));
    document.commitTextBuffer();
    EXPECT_EQ(contentText(), "[1]");
    EXPECT_TRUE(document.content().tree);
}

TEST_F(JSONDocumentEditingTests, ApplyingDropsTheBufferBeforeViewsOfAnotherModeAreMade) {
    edit("[1]");
    type(QStringLiteral(" "));
    Preferences::setInitialMode(Preferences::InitialMode::automatic);
    std::vector<std::string> events;
    const auto note = [&](const char* event) {
        events.emplace_back(event);
        events.back() += document.textBuffer() ? ": buffer" : ": no buffer";
        events.back() += document.isTextBufferEdited() ? ", edited" : "";
    };
    QObject::connect(&document, &JSONDocument::contentChanged, [&] { note("content"); });
    QObject::connect(&document, &JSONDocument::modeChanged, [&] { note("mode"); });
    QObject::connect(&document, &JSONDocument::revisionChanged, [&] { note("revision"); });
    QObject::connect(&document, &JSONDocument::didApply, [&] { note("applied"); });
    document.apply(contentOf("[2]"));
    EXPECT_THAT(events, testing::ElementsAre("content: buffer, edited", "mode: no buffer", "revision: no buffer",
                                             "applied: no buffer"));
    EXPECT_EQ(savedText(), "[2]");
}

TEST_F(JSONDocumentEditingTests, ABufferAttachedWhileApplyingStays) {
    edit("[1]");
    type(QStringLiteral(" "));
    document.apply(contentOf("[2]"));
    Preferences::setInitialMode(Preferences::InitialMode::automatic);
    document.apply(contentOf("[3]"));
    ASSERT_EQ(document.mode(), EditorMode::tree);
    QObject::connect(&document, &JSONDocument::modeChanged,
                     [&] { document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text)); });
    document.apply(contentOf("[4"));
    ASSERT_NE(document.textBuffer(), nullptr);
    EXPECT_EQ(bufferText(), "[4");
}

TEST_F(JSONDocumentEditingTests, WhoeverKeepsStepsDropsThemAfterEveryApply) {
    edit("[1]");
    QObject::connect(&document, &JSONDocument::didApply, &manager, &UndoManager::removeAllActions);
    document.replaceContent(contentOf("[2]"), &manager);
    EXPECT_TRUE(manager.canUndo());
    document.apply(contentOf("[3]"));
    EXPECT_FALSE(manager.canUndo());
    document.replaceContent(contentOf("[4]"), &manager);
    document.apply(document.content());
    EXPECT_FALSE(manager.canUndo());
}

TEST_F(JSONDocumentEditingTests, ReplacingCommitsThenSetsContentThenBufferThenRevisionThenTheStep) {
    TextStorage& buffer = edit("[1");
    type(QStringLiteral("]"));
    std::vector<std::string> events;
    const auto note = [&](const char* event) {
        events.push_back(event + std::string(": ") + contentText() + " " + bufferText() + " " +
                         (manager.canUndo() ? "step" : "no step"));
    };
    QObject::connect(&document, &JSONDocument::contentChanged, [&] { note("content"); });
    QObject::connect(&buffer, &TextStorage::didProcessEditing, [&] { note("buffer"); });
    QObject::connect(&document, &JSONDocument::revisionChanged, [&] { note("revision"); });
    QObject::connect(&manager, &UndoManager::changed, [&] { note("manager"); });
    const std::int64_t revision = document.revision();
    document.replaceContent(contentOf("{}"), &manager);
    EXPECT_THAT(events,
                testing::ElementsAre("content: [1] [1] no step", "content: {} [1] no step", "buffer: {} {} no step",
                                     "revision: {} {} no step", "manager: {} {} step", "manager: {} {} step"));
    EXPECT_EQ(document.revision(), revision + 1);
}

TEST_F(JSONDocumentEditingTests, TheBufferSeesOneReplacementOfItsWholeText) {
    TextStorage& buffer = edit("[\xF0\x9F\x98\x80]");
    QSignalSpy edits(&buffer, &TextStorage::didProcessEditing);
    document.replaceContent(contentOf("[ 1 ]"), nullptr);
    ASSERT_EQ(edits.count(), 1);
    EXPECT_EQ(edits[0][0].value<EditedMask>(), EditedMask::characters);
    EXPECT_EQ(edits[0][1].value<TextRange>(), (TextRange{0, 5}));
    EXPECT_EQ(edits[0][2].toLongLong(), 1);
    EXPECT_FALSE(document.isTextBufferEdited());
    EXPECT_TRUE(document.content().tree);
}

TEST_F(JSONDocumentEditingTests, UndoRestoresTheOldContentAndItsTextAndRedoTheNewOne) {
    edit("[1,2]");
    document.replaceContent(contentOf("[\n  1,\n  2\n]\n"), &manager);
    EXPECT_EQ(manager.undoMenuItemTitle(), QStringLiteral("Deshacer Formato"));
    for (int round = 0; round < 2; ++round) {
        manager.undo();
        EXPECT_EQ(contentText(), "[1,2]");
        EXPECT_EQ(bufferText(), "[1,2]");
        EXPECT_TRUE(document.content().tree);
        EXPECT_EQ(manager.redoMenuItemTitle(), QStringLiteral("Rehacer Formato"));
        EXPECT_FALSE(manager.canUndo());
        manager.redo();
        EXPECT_EQ(contentText(), "[\n  1,\n  2\n]\n");
        EXPECT_EQ(bufferText(), "[\n  1,\n  2\n]\n");
        EXPECT_EQ(manager.undoActionName(), QStringLiteral("Formato"));
        EXPECT_FALSE(manager.canRedo());
    }
    EXPECT_EQ(document.revision(), 6);
}

TEST_F(JSONDocumentEditingTests, UndoRestoresWhatWasTypedBeforeTheReplacement) {
    edit("[1");
    type(QStringLiteral(",2]"));
    document.replaceContent(contentOf("[]"), &manager);
    manager.undo();
    EXPECT_EQ(bufferText(), "[1,2]");
    EXPECT_EQ(savedText(), "[1,2]");
    manager.redo();
    EXPECT_EQ(savedText(), "[]");
}

TEST_F(JSONDocumentEditingTests, WithoutAnUndoManagerAReplacementCannotBeUndone) {
    edit("[1]");
    document.replaceContent(contentOf("[2]"), nullptr);
    EXPECT_EQ(bufferText(), "[2]");
    EXPECT_FALSE(manager.canUndo());
    EXPECT_TRUE(document.isModified());
}

TEST_F(JSONDocumentEditingTests, InATreeOrWithoutABufferOnlyTheContentIsReplaced) {
    document.apply(contentOf("[1]"));
    ASSERT_EQ(document.mode(), EditorMode::tree);
    const auto buffer = std::make_shared<TextStorage>(*document.content().text);
    document.attachTextBuffer(buffer);
    document.replaceContent(contentOf("[2]"), &manager);
    EXPECT_EQ(bufferText(), "[1]");
    EXPECT_EQ(contentText(), "[2]");
    document.dropTextBuffer();
    document.replaceContent(contentOf("[3]"), &manager);
    manager.undo();
    EXPECT_EQ(contentText(), "[2]");
    EXPECT_EQ(textOf(buffer->text()), "[1]");
}

TEST_F(JSONDocumentEditingTests, AContentWithoutATextLeavesTheBuffer) {
    edit("[1]");
    document.replaceContent(JSONContent::empty(), &manager);
    EXPECT_EQ(bufferText(), "[1]");
    EXPECT_FALSE(document.content().text);
}

TEST_F(JSONDocumentEditingTests, TheSameContentIsAReplacementToo) {
    edit("[1]");
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    QSignalSpy revisions(&document, &JSONDocument::revisionChanged);
    document.replaceContent(document.content(), &manager);
    EXPECT_EQ(contents.count(), 0);
    EXPECT_EQ(revisions.count(), 1);
    EXPECT_TRUE(manager.canUndo());
}

TEST_F(JSONDocumentEditingTests, StepsGoWithTheDocumentAndTheManagerMayGoFirst) {
    auto brief = std::make_unique<JSONDocument>();
    brief->replaceContent(contentOf("[1]"), &manager);
    brief.reset();
    EXPECT_FALSE(manager.canUndo());

    auto other = std::make_unique<UndoManager>();
    QObject::connect(&document, &JSONDocument::revisionChanged, [&] { other.reset(); });
    document.replaceContent(contentOf("[2]"), other.get());
    EXPECT_EQ(contentText(), "[2]");
}

TEST_F(JSONDocumentEditingTests, ABufferIsOnlyReplacedByAnotherWhenItIsCommitted) {
    edit("[1]");
    type(QStringLiteral(" "));
    document.attachTextBuffer(document.textBuffer());
    EXPECT_TRUE(document.isTextBufferEdited());
    document.commitTextBuffer();
    const auto next = std::make_shared<TextStorage>(*document.content().text);
    document.attachTextBuffer(next);
    EXPECT_EQ(document.textBuffer(), next);
    type(QStringLiteral(" "));
    EXPECT_DEATH(document.attachTextBuffer(std::make_shared<TextStorage>()), "the text buffer of before is committed");
    document.dropTextBuffer();
    EXPECT_FALSE(document.isTextBufferEdited());
    EXPECT_EQ(savedText(), "[1] ");
}

} // namespace
} // namespace quelm
