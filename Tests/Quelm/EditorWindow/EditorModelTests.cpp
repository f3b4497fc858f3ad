#include "Tests/Quelm/EditorWindow/EditorModelTest.h"

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditorModelTests : public EditorModelTest {};

// What the window shows.

TEST_F(EditorModelTests, AtFirstThereIsNothingToShow) {
    openTree("[1]");
    EXPECT_EQ(&model->document(), document.get());
    EXPECT_EQ(&model->tree().document(), document.get());
    EXPECT_TRUE(model->validator().state().isIdle());
    EXPECT_FALSE(model->validator().isPending());
    EXPECT_EQ(model->export_(), nullptr);
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_EQ(model->goTo(), std::nullopt);
    EXPECT_FALSE(model->isGoToLinePresented());
    EXPECT_FALSE(model->isBusy());
    EXPECT_FALSE(model->isWorkShown());
    EXPECT_FALSE(model->isExporting());
}

TEST_F(EditorModelTests, APropertyAnnouncesOnlyAnotherValue) {
    openTree("[1]");
    for (int time = 0; time < 2; ++time)
        model->setErrorMessage(QStringLiteral("x"));
    EXPECT_THAT(takeLog(), ElementsAre("message"));
    for (int time = 0; time < 2; ++time)
        model->setGoToLinePresented(true);
    EXPECT_THAT(takeLog(), ElementsAre("goToLine"));
    const auto exported = std::make_shared<const ExportDocument>(document->content(), compact);
    for (int time = 0; time < 2; ++time)
        model->setExport(exported);
    EXPECT_THAT(takeLog(), ElementsAre("export"));
    const TextLocation place(3, 1);
    for (int time = 0; time < 2; ++time)
        model->setGoTo(place);
    EXPECT_THAT(takeLog(), ElementsAre("goTo"));
    model->setGoTo(TextLocation(3, 1));
    EXPECT_THAT(takeLog(), ElementsAre("goTo"));
}

TEST_F(EditorModelTests, TheTreeEditorUsesTheWindowsSteps) {
    openTree("[1]");
    EXPECT_EQ(model->tree().undoManager(), &undoManager);
    model->setUndoManager(nullptr);
    EXPECT_EQ(model->undoManager(), nullptr);
    EXPECT_EQ(model->tree().undoManager(), nullptr);
}

TEST_F(EditorModelTests, ErrorsOfTheTreeEditorAreShown) {
    openTree("[1]");
    model->tree().onError(QStringLiteral("No se pudo pegar.\nLínea 1"));
    EXPECT_EQ(message(), "No se pudo pegar.\nLínea 1");
    // The tree editor may be heard of while its model goes.
    const auto onError = model->tree().onError;
    model.reset();
    takeLog();
    onError(QStringLiteral("tarde"));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(EditorModelTests, GoingToTheErrorSendsTheCaretThereEveryTime) {
    openText("[1,\n 2 3]");
    model->goToError();
    EXPECT_EQ(place(), "2:4");
    model->goToError();
    EXPECT_THAT(takeLog(), ElementsAre("goTo", "goTo"));
}

TEST_F(EditorModelTests, WithoutAnErrorThereIsNowhereToGo) {
    openText("[1]");
    model->goToError();
    EXPECT_EQ(place(), "");
}

// The text editor.

TEST_F(EditorModelTests, TheContentTellsOfTheTextThatIsShown) {
    openText("[1, 2]");
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(3));
    openText("[1, 2");
    ASSERT_TRUE(model->validator().state().isInvalid());
    EXPECT_EQ(*model->validator().state().error(), *document->content().parseError);
    EXPECT_FALSE(model->validator().isPending());
}

TEST_F(EditorModelTests, ATextThatTheContentDoesNotTellOfIsValidatedAtOnce) {
    openText("[1, 2]");
    type("[1, 2, 3]");
    document->commitTextBuffer();
    model->validateShownText();
    EXPECT_TRUE(model->validator().state().isIdle());
    clock.advance(std::chrono::milliseconds(0));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->validator().isPending(); }));
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(4));
}

TEST_F(EditorModelTests, WhatIsTypedIsNotWhatTheContentTells) {
    openText("[1, 2]");
    type("[");
    model->validateShownText();
    EXPECT_TRUE(model->validator().state().isIdle());
    clock.advance(std::chrono::milliseconds(0));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->validator().isPending(); }));
    EXPECT_TRUE(model->validator().state().isInvalid());
}

TEST_F(EditorModelTests, TypingIsAnEditAndIsValidatedWhenItPauses) {
    openText("[1, 2]");
    type("[");
    EXPECT_TRUE(document->isTextBufferEdited());
    EXPECT_TRUE(document->isModified());
    clock.advance(std::chrono::milliseconds(299));
    type("[1]");
    clock.advance(std::chrono::milliseconds(299));
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(3));
    EXPECT_TRUE(model->validator().isPending());
    clock.advance(std::chrono::milliseconds(1));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->validator().isPending(); }));
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(2));
}

TEST_F(EditorModelTests, WithoutATextBufferTheContentsTextIsValidated) {
    openText("[1, 2]");
    type("[1]");
    document->commitTextBuffer();
    document->dropTextBuffer();
    clock.advance(TextValidator::typingPause);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->validator().isPending(); }));
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(2));
}

TEST_F(EditorModelTests, AReplacedContentIsNotJudgedByTheTextOfBefore) {
    openText("[1, 2]");
    type("[1, 2, 3]");
    document->replaceContent(JSONContent::fromText(TextRope(SharedText("{"))), nullptr);
    EXPECT_TRUE(model->validator().state().isInvalid());
    clock.advance(TextValidator::typingPause);
    EXPECT_FALSE(model->validator().isPending());
    EXPECT_TRUE(model->validator().state().isInvalid());

    document->apply(JSONContent::fromText(TextRope(SharedText("0"))));
    EXPECT_EQ(model->validator().state(), TextValidator::State::valid(1));
}

TEST_F(EditorModelTests, NothingIsKnownOfATextThatIsNotShown) {
    openText("[1, 2");
    Preferences::setInitialMode(Preferences::InitialMode::tree);
    document->apply(JSONContent::fromText(TextRope(SharedText("[1]"))));
    EXPECT_TRUE(model->validator().state().isIdle());
    EXPECT_FALSE(model->validator().isPending());
}

} // namespace
} // namespace quelm
