#include "Quelm/Application/ClosingQuestion.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
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

class ClosingQuestionTests : public testing::Test {
protected:
    /// A window with the text "[1" and an "x" typed before it.
    void openAndType() {
        path = folder.write(QStringLiteral("notas.json"), "[1");
        controller.open(path);
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return !controller.windows().empty() && !controller.windows().front()->isOpening() &&
                   controller.windows().front()->isVisible();
        }));
        window = controller.windows().front();
        window->textEditor()->textView().setSelectedRange({0, 0});
        QTest::keyClick(&window->textEditor()->textView(), Qt::Key_X);
        ASSERT_TRUE(window->document().isModified());
    }
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

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QString path;
    DocumentController controller{[](EditorView&) {}};
    QPointer<EditorView> window;
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

} // namespace
} // namespace quelm
