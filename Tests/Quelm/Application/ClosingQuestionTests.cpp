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

class QuittingTests : public ClosingQuestionTests {
protected:
    /// Two windows, the given ones with changes.
    void openTwo(std::initializer_list<std::size_t> changed) {
        for (const QString& name : {QStringLiteral("a.json"), QStringLiteral("b.json")})
            controller.open(folder.write(name, "[1"));
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return controller.windows().size() == 2 &&
                   std::ranges::none_of(controller.windows(), &EditorView::isOpening);
        }));
        for (const std::size_t index : changed) {
            TextView& view = controller.windows().at(index)->textEditor()->textView();
            view.setSelectedRange({0, 0});
            QTest::keyClick(&view, Qt::Key_X);
        }
    }
    void answerNext(const QString& title) {
        const auto asks = [](EditorView* view) { return view->findChild<QMessageBox*>() != nullptr; };
        ASSERT_TRUE(QTest::qWaitFor([&] { return std::ranges::any_of(controller.windows(), asks); }));
        window = *std::ranges::find_if(controller.windows(), asks);
        answer(title);
        QMessageBox* answered = question();
        ASSERT_TRUE(QTest::qWaitFor([&, box = QPointer<QMessageBox>(answered)] { return !box; }));
    }
    bool allClose() {
        return QTest::qWaitFor([this] { return controller.windows().empty(); });
    }
};

TEST_F(QuittingTests, AsksAboutTheChangedWindowAndClosesAll) {
    for (const std::size_t changed : {0, 1}) {
        openTwo({changed});
        controller.quit();
        answerNext(QStringLiteral("No guardar"));
        EXPECT_TRUE(allClose());
    }
}

TEST_F(QuittingTests, SavesWhatIsToBeSaved) {
    openTwo({0, 1});
    controller.quit();
    answerNext(QStringLiteral("Guardar"));
    answerNext(QStringLiteral("Guardar"));
    EXPECT_TRUE(allClose());
    EXPECT_EQ(TemporaryFolder::contents(folder.path(QStringLiteral("a.json"))), "x[1");
    EXPECT_EQ(TemporaryFolder::contents(folder.path(QStringLiteral("b.json"))), "x[1");
}

TEST_F(QuittingTests, CancellingOneQuestionClosesNone) {
    openTwo({0, 1});
    controller.quit();
    answerNext(QStringLiteral("No guardar"));
    answerNext(QStringLiteral("Cancelar"));
    EXPECT_EQ(controller.windows().size(), 2u);
    EXPECT_TRUE(controller.windows()[0]->document().isModified());
}

} // namespace
} // namespace quelm
