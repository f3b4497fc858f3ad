#include "Quelm/Application/ClosingQuestion.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Application/ChangedDocumentTest.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

// Closing a window with changes, as its user sees it.

namespace quelm {
namespace {

class ClosingQuestionTests : public ChangedDocumentTest {
protected:
    QMessageBox* question() const { return window ? window->findChild<QMessageBox*>() : nullptr; }
    void answer(const QString& title) {
        ASSERT_NE(question(), nullptr);
        const auto buttons = question()->buttons();
        const auto button = std::ranges::find(buttons, title, &QAbstractButton::text);
        ASSERT_NE(button, buttons.end());
        QTest::mouseClick(*button, Qt::LeftButton);
    }
    bool closes() {
        return QTest::qWaitFor([this] { return window == nullptr; });
    }
};

TEST_F(ClosingQuestionTests, AWindowWithChangesStaysAndAsks) {
    openAndType();
    EXPECT_FALSE(window->close());
    ASSERT_NE(question(), nullptr);
    EXPECT_EQ(question()->text(), QStringLiteral("¿Quieres guardar los cambios de \"notas.json\"?"));
    window->close();
    EXPECT_EQ(window->findChildren<QMessageBox*>().size(), 1);
    answer(QStringLiteral("Cancelar"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return question() == nullptr; }));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(TemporaryFolder::contents(path), "[1");
}

TEST_F(ClosingQuestionTests, ClosingTheQuestionCancelsAndForgetsTheQuitting) {
    openAndType();
    controller.quit();
    ASSERT_NE(question(), nullptr);
    question()->close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return question() == nullptr; }));
    controller.save(*window);
    ASSERT_TRUE(QTest::qWaitFor([this] { return controller.isInHand(*window) == false; }));
    EXPECT_FALSE(window->document().isModified());
    QCoreApplication::processEvents();
    EXPECT_TRUE(window && window->isVisible()) << "saving is no longer part of quitting";
}

TEST_F(ClosingQuestionTests, SavingSavesAndCloses) {
    openAndType();
    window->close();
    answer(QStringLiteral("Guardar"));
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "x[1");
}

TEST_F(ClosingQuestionTests, NotSavingClosesAndLeavesTheFile) {
    openAndType();
    window->close();
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "[1");
}

TEST_F(ClosingQuestionTests, AWindowWithoutChangesClosesAtOnce) {
    openAndType();
    window->undoManager().undo();
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(closes());
}

TEST_F(ClosingQuestionTests, WhatIsTypedWhileItIsSavedIsAskedAboutAgain) {
    openAndType();
    window->close();
    answer(QStringLiteral("Guardar"));
    QTest::keyClick(&window->textEditor()->textView(), Qt::Key_Y);
    ASSERT_TRUE(QTest::qWaitFor([this] { return TemporaryFolder::contents(path) == "x[1" && question(); }));
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(closes());
}

TEST_F(ClosingQuestionTests, AWindowThatIsBeingSavedAsItIsClosesWithoutAQuestion) {
    openAndType();
    controller.save(*window);
    window->close();
    EXPECT_EQ(question(), nullptr);
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "x[1");
}

TEST_F(ClosingQuestionTests, AnEarlierSaveDoesNotAnswerForALaterState) {
    openAndType();
    controller.save(*window);
    QTest::keyClick(&window->textEditor()->textView(), Qt::Key_Y);
    window->close();
    answer(QStringLiteral("Guardar"));
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "xy[1");
}

TEST_F(ClosingQuestionTests, WhatIsUndoneWhileItIsSavedIsAskedAbout) {
    openAndType();
    controller.save(*window);
    window->undoManager().undo();
    ASSERT_FALSE(window->document().isModified());
    EXPECT_FALSE(window->close());
    ASSERT_NE(question(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->document().isModified(); }));
    EXPECT_EQ(TemporaryFolder::contents(path), "x[1");
    answer(QStringLiteral("Guardar"));
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "[1");
}

TEST_F(ClosingQuestionTests, WhatIsUndoneWhileItIsSavedCanBeGivenUp) {
    openAndType();
    controller.save(*window);
    window->undoManager().undo();
    window->close();
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(closes());
    EXPECT_TRUE(QTest::qWaitFor([this] { return controller.isIdle(); }));
    EXPECT_EQ(TemporaryFolder::contents(path), "x[1");
}

TEST_F(ClosingQuestionTests, WhatIsUndoneAndDoneAgainWhileItIsSavedIsNotAskedAbout) {
    openAndType();
    controller.save(*window);
    window->undoManager().undo();
    window->undoManager().redo();
    window->close();
    EXPECT_EQ(question(), nullptr);
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "x[1");
}

} // namespace
} // namespace quelm
