#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Application/ChangedDocumentTest.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string_view>

// Giving the changes of a document up for what its file holds.

namespace quelm {
namespace {

class RevertingTests : public ChangedDocumentTest {
protected:
    void type(Qt::Key key) { QTest::keyClick(&view(), key); }
    std::string text() const { return std::string(window->document().snapshot().text->contiguous().view()); }

    QMessageBox* box() const {
        const auto boxes = window ? window->findChildren<QMessageBox*>() : QList<QMessageBox*>();
        const auto shown = std::ranges::find_if(boxes, &QWidget::isVisible);
        return shown == boxes.end() ? nullptr : *shown;
    }
    void answer(const char* title) {
        ASSERT_NE(box(), nullptr);
        const auto buttons = box()->buttons();
        const auto button = std::ranges::find(buttons, QString::fromUtf8(title), &QAbstractButton::text);
        ASSERT_NE(button, buttons.end());
        QTest::mouseClick(*button, Qt::LeftButton);
    }
    bool isReverted() const {
        return QTest::qWaitFor([this] { return !window->document().isModified(); });
    }
};

TEST_F(RevertingTests, AsksFirstAndChangesNothingWhenRefused) {
    openAndType();
    controller.revert(*window);
    ASSERT_NE(box(), nullptr);
    EXPECT_EQ(box()->text(), QStringLiteral("¿Quieres descartar los cambios de \"notas.json\"?"));
    QTest::keyClick(box(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !box(); }));
    EXPECT_EQ(text(), "x[1");
    EXPECT_FALSE(view().isReadOnly());
}

TEST_F(RevertingTests, IsNotWhatReturnAnswers) {
    openAndType();
    controller.revert(*window);
    QTest::keyClick(box(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !box(); }));
    EXPECT_EQ(text(), "x[1");
    EXPECT_FALSE(view().isReadOnly());
}

TEST_F(RevertingTests, ShowsWhatTheFileHoldsNowWithoutStepsOfBefore) {
    openAndType();
    folder.write(QStringLiteral("notas.json"), "[2]");
    controller.revert(*window);
    answer("Descartar");
    EXPECT_TRUE(isReverted());
    EXPECT_EQ(window->document().mode(), EditorMode::tree);
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 2);
    EXPECT_FALSE(window->treeEditor().isReadOnly());
    EXPECT_FALSE(window->undoManager().canUndo());
    EXPECT_EQ(TemporaryFolder::contents(path), "[2]");
}

TEST_F(RevertingTests, NothingIsAskedOfAnUnchangedDocument) {
    openAndType();
    window->undoManager().undo();
    controller.revert(*window);
    EXPECT_EQ(box(), nullptr);
}

TEST_F(RevertingTests, LosesNothingWhenTheFileCannotBeRead) {
    openAndType();
    ASSERT_TRUE(QFile::remove(path));
    controller.revert(*window);
    answer("Descartar");
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return box() && box()->informativeText() == QStringLiteral("El archivo no existe."); }));
    EXPECT_EQ(box()->text(), QStringLiteral("No se pudo volver a leer «notas.json»."));
    EXPECT_EQ(text(), "x[1");
    EXPECT_TRUE(window->document().isModified());
    EXPECT_TRUE(window->undoManager().canUndo());
    EXPECT_FALSE(view().isReadOnly());
}

/// The file is read when the test lets it be.
class SlowRevertingTests : public RevertingTests {
protected:
    void startReverting() {
        openAndType();
        blocked.emplace();
        controller.revert(*window);
        answer("Descartar");
        ASSERT_TRUE(QTest::qWaitFor([this] { return !box(); }));
    }
    void letItBeRead(std::string_view bytes) {
        folder.write(QStringLiteral("notas.json"), bytes);
        blocked.reset();
    }

private:
    std::optional<BlockedThreads> blocked;
};

TEST_F(SlowRevertingTests, MeanwhileTheDocumentIsNotEditedNorSaved) {
    startReverting();
    EXPECT_TRUE(view().isReadOnly());
    type(Qt::Key_Y);
    EXPECT_EQ(text(), "x[1");
    EXPECT_FALSE(window->undoManager().canUndo());
    controller.save(*window);
    letItBeRead("[3,");
    EXPECT_TRUE(isReverted());
    EXPECT_EQ(text(), "[3,");
    EXPECT_FALSE(view().isReadOnly());
}

TEST_F(SlowRevertingTests, MeanwhileTheWindowCanBeClosed) {
    startReverting();
    window->close();
    answer("No guardar");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window; }));
    // Nobody listens any more.
    letItBeRead({});
}

TEST_F(SlowRevertingTests, AQuestionAboutChangesThatAreGoneIsSettled) {
    startReverting();
    window->close();
    ASSERT_NE(box(), nullptr);
    letItBeRead("[3,");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window; }));
}

} // namespace
} // namespace quelm
