#include "Quelm/Foundation/BackgroundThreads.h"
#include "Tests/Quelm/Documents/EditedDocumentTest.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

namespace quelm {
namespace {

using testing::ElementsAre;

/// Keeps all work that is started meanwhile from beginning.
class HeldPool {
public:
    HeldPool() {
        for (int thread = 0; thread < count_; ++thread)
            backgroundThreads().start([gate = gate_] { gate->acquire(); });
    }
    ~HeldPool() { gate_->release(count_); }

private:
    const int count_ = backgroundThreads().maxThreadCount();
    const std::shared_ptr<QSemaphore> gate_ = std::make_shared<QSemaphore>();
};

class JSONDocumentModeTests : public EditedDocumentTest {
protected:
    using Outcome = std::expected<void, ConversionError>;

    void show(std::string_view text) {
        document.apply(contentOf(text));
        ASSERT_EQ(document.mode(), EditorMode::tree);
    }
    /// The tree as its editor leaves it: without a text.
    void appendElement() {
        const auto change = [](JSONTree& tree) { return tree.insertChange(tree.root(), true); };
        ASSERT_TRUE(document.applyTreeChange(change));
    }
    void start(EditorMode mode) {
        outcome.reset();
        task = document.setMode(mode, [this](const Outcome& result) { outcome = result; });
    }
    bool awaitOutcome() {
        return QTest::qWaitFor([this] { return outcome.has_value(); });
    }
    bool switchTo(EditorMode mode) {
        start(mode);
        EXPECT_TRUE(awaitOutcome());
        EXPECT_FALSE(task.isRunning());
        return outcome && *outcome;
    }

    std::optional<Outcome> outcome;
    BackgroundTask task;
};

TEST_F(JSONDocumentModeTests, TheModeThereIsAlreadyIsASuccessAtOnce) {
    edit("[1");
    type(QStringLiteral("]"));
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    const std::int64_t revision = document.revision();
    start(EditorMode::text);
    ASSERT_TRUE(outcome);
    EXPECT_TRUE(*outcome);
    EXPECT_FALSE(task.isRunning());
    EXPECT_TRUE(document.isTextBufferEdited());
    EXPECT_EQ(contents.count(), 0);
    EXPECT_EQ(document.revision(), revision);
}

TEST_F(JSONDocumentModeTests, ATextThatIsThereIsShownAsItIs) {
    show("[ 1,\r\n2 ]");
    const TextRope text = *document.content().text;
    ASSERT_TRUE(switchTo(EditorMode::text));
    EXPECT_EQ(document.mode(), EditorMode::text);
    EXPECT_TRUE(document.content().text->isSameValue(text));
    EXPECT_TRUE(document.content().tree);
    EXPECT_EQ(savedText(), "[ 1,\r\n2 ]");
}

TEST_F(JSONDocumentModeTests, AnEditedTreeIsWrittenInTheContentsOwnStyle) {
    show("[\n\t1\n]\n");
    appendElement();
    const JSONStyle style = document.content().style;
    ASSERT_TRUE(switchTo(EditorMode::text));
    EXPECT_EQ(contentText(), "[\n\t1,\n\t\"\"\n]\n");
    EXPECT_TRUE(document.content().tree);
    EXPECT_EQ(document.content().style, style);
}

TEST_F(JSONDocumentModeTests, ANewDocumentIsShownAsText) {
    ASSERT_TRUE(switchTo(EditorMode::text));
    EXPECT_EQ(contentText(), "{}\n");
    EXPECT_EQ(document.revision(), 1);
    EXPECT_FALSE(document.isModified());
}

TEST_F(JSONDocumentModeTests, WhatWasTypedIsParsedAndItsTextStays) {
    edit("[1");
    type(QStringLiteral(", {\"a\": 2}]"));
    ASSERT_TRUE(switchTo(EditorMode::tree));
    EXPECT_EQ(document.mode(), EditorMode::tree);
    ASSERT_TRUE(document.content().tree);
    EXPECT_EQ(document.content().tree->nodeCount(), 4);
    EXPECT_FALSE(document.content().parseError);
    EXPECT_EQ(contentText(), "[1, {\"a\": 2}]");
    EXPECT_EQ(document.textBuffer(), nullptr);
    EXPECT_FALSE(document.isTextBufferEdited());
}

TEST_F(JSONDocumentModeTests, ThereAndBackGivesTheSameText) {
    edit("[1 ]");
    type(QStringLiteral(" \n"));
    ASSERT_TRUE(switchTo(EditorMode::tree));
    ASSERT_TRUE(switchTo(EditorMode::text));
    EXPECT_EQ(contentText(), "[1 ] \n");
}

TEST_F(JSONDocumentModeTests, ContentThenBufferThenModeThenRevisionChangeAndThenItIsFinished) {
    edit("[1");
    type(QStringLiteral("]"));
    document.commitTextBuffer();
    std::vector<std::string> events;
    const auto note = [&](const char* event) {
        events.push_back(std::string(event) + (document.content().tree ? ": tree, " : ": no tree, ") +
                         (document.textBuffer() ? "buffer, " : "no buffer, ") + std::string(rawValue(document.mode())) +
                         " " + std::to_string(document.revision()));
    };
    QObject::connect(&document, &JSONDocument::contentChanged, [&] { note("content"); });
    QObject::connect(&document, &JSONDocument::modeChanged, [&] { note("mode"); });
    QObject::connect(&document, &JSONDocument::revisionChanged, [&] { note("revision"); });
    task = document.setMode(EditorMode::tree, [&](const Outcome& result) {
        outcome = result;
        note("finished");
    });
    ASSERT_TRUE(awaitOutcome());
    EXPECT_THAT(events, ElementsAre("content: tree, buffer, text 1", "mode: tree, no buffer, tree 1",
                                    "revision: tree, no buffer, tree 2", "finished: tree, no buffer, tree 2"));
}

TEST_F(JSONDocumentModeTests, ABufferThatIsAttachedForTheTextStays) {
    show("[1]");
    QObject::connect(&document, &JSONDocument::modeChanged,
                     [&] { document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text)); });
    ASSERT_TRUE(switchTo(EditorMode::text));
    ASSERT_NE(document.textBuffer(), nullptr);
    EXPECT_EQ(bufferText(), "[1]");
}

TEST_F(JSONDocumentModeTests, ATextThatIsNotJSONChangesNothingButIsCommitted) {
    const TextStorage& buffer = edit("[1]");
    type(QStringLiteral("\n x"));
    QSignalSpy modes(&document, &JSONDocument::modeChanged);
    QSignalSpy revisions(&document, &JSONDocument::revisionChanged);
    EXPECT_FALSE(switchTo(EditorMode::tree));
    ASSERT_TRUE(outcome->error().parseError());
    EXPECT_EQ(outcome->error().description(),
              QStringLiteral("Línea 2, columna 2: Contenido inesperado después del valor raíz"));
    EXPECT_EQ(document.mode(), EditorMode::text);
    EXPECT_EQ(contentText(), "[1]\n x");
    EXPECT_FALSE(document.content().tree);
    EXPECT_FALSE(document.content().parseError);
    EXPECT_EQ(document.textBuffer().get(), &buffer);
    EXPECT_EQ(modes.count(), 0);
    EXPECT_EQ(revisions.count(), 0);
}

TEST_F(JSONDocumentModeTests, TheStateStaysTheOneItWas) {
    show("[1]");
    const StateToken::Value unmodified = document.stateToken().current();
    ASSERT_TRUE(switchTo(EditorMode::text));
    EXPECT_EQ(document.stateToken().current(), unmodified);
    EXPECT_FALSE(document.isModified());
    document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    type(QStringLiteral(" "));
    const StateToken::Value modified = document.stateToken().current();
    ASSERT_TRUE(switchTo(EditorMode::tree));
    EXPECT_EQ(document.stateToken().current(), modified);
    EXPECT_TRUE(document.isModified());
    document.noteSaved(modified);
    EXPECT_FALSE(document.isModified());
}

TEST_F(JSONDocumentModeTests, WhatIsTypedMeanwhileIsNotLost) {
    edit("[1]");
    start(EditorMode::tree);
    type(QStringLiteral(" "));
    ASSERT_TRUE(awaitOutcome());
    ASSERT_FALSE(*outcome);
    EXPECT_TRUE(outcome->error().isCancellation());
    EXPECT_EQ(document.mode(), EditorMode::text);
    EXPECT_EQ(savedText(), "[1] ");
}

TEST_F(JSONDocumentModeTests, WhatIsEditedInTheTreeMeanwhileIsNotLost) {
    show("[]");
    start(EditorMode::text);
    appendElement();
    ASSERT_TRUE(awaitOutcome());
    ASSERT_FALSE(*outcome);
    EXPECT_TRUE(outcome->error().isCancellation());
    EXPECT_EQ(document.mode(), EditorMode::tree);
    EXPECT_EQ(document.content().tree->nodeCount(), 2);
}

TEST_F(JSONDocumentModeTests, AnotherContentMeanwhileCancels) {
    show("[1]");
    start(EditorMode::text);
    document.apply(contentOf("[2]"));
    ASSERT_TRUE(awaitOutcome());
    EXPECT_TRUE(outcome->error().isCancellation());
    EXPECT_EQ(contentText(), "[2]");
    start(EditorMode::text);
    document.replaceContent(contentOf("[3]"), nullptr);
    ASSERT_TRUE(awaitOutcome());
    EXPECT_TRUE(outcome->error().isCancellation());
    EXPECT_EQ(contentText(), "[3]");
    EXPECT_EQ(document.mode(), EditorMode::tree);
}

TEST_F(JSONDocumentModeTests, AnErrorOfAnOutdatedTextIsACancellationToo) {
    edit("[1");
    start(EditorMode::tree);
    type(QStringLiteral("]"));
    ASSERT_TRUE(awaitOutcome());
    ASSERT_FALSE(*outcome);
    EXPECT_TRUE(outcome->error().isCancellation());
}

TEST_F(JSONDocumentModeTests, WorkThatIsAskedToStopIsACancellation) {
    show("[1]");
    {
        const HeldPool held;
        start(EditorMode::text);
        task.requestStop();
    }
    ASSERT_TRUE(awaitOutcome());
    ASSERT_FALSE(*outcome);
    EXPECT_TRUE(outcome->error().isCancellation());
    EXPECT_EQ(document.mode(), EditorMode::tree);
}

TEST_F(JSONDocumentModeTests, LettingGoOfTheTaskEndsItWithoutAWord) {
    show("[1]");
    const std::int64_t revision = document.revision();
    start(EditorMode::text);
    task = {};
    backgroundThreads().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(outcome);
    EXPECT_EQ(document.mode(), EditorMode::tree);
    EXPECT_EQ(document.revision(), revision);
}

TEST_F(JSONDocumentModeTests, ADocumentThatIsGoneHearsNothing) {
    auto brief = std::make_unique<JSONDocument>();
    task = brief->setMode(EditorMode::text, [this](const Outcome& result) { outcome = result; });
    brief.reset();
    backgroundThreads().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(outcome);
}

TEST_F(JSONDocumentModeTests, AnotherSwitchMayBeAskedForWhenOneIsFinished) {
    show("[1]");
    task = document.setMode(EditorMode::text, [this](const Outcome&) { start(EditorMode::tree); });
    ASSERT_TRUE(awaitOutcome());
    EXPECT_TRUE(*outcome);
    EXPECT_EQ(document.mode(), EditorMode::tree);
    EXPECT_EQ(document.revision(), 3);
}

} // namespace
} // namespace quelm
