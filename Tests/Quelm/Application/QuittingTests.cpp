#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/Session.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

// Quitting with several windows, as their user sees it.

namespace quelm {
namespace {

class QuittingTests : public testing::Test {
protected:
    EditorView& window(std::size_t index) { return *controller.windows().at(index); }
    QString path(const QString& name) const { return folder.path(name); }
    std::string saved(const QString& name) const { return TemporaryFolder::contents(path(name)); }

    /// Windows with the text "[1", before which an "x" is typed.
    void openChanged(const QStringList& names) {
        for (const QString& name : names) {
            const std::size_t count = controller.windows().size() + 1;
            controller.open(folder.write(name, "[1"));
            ASSERT_TRUE(waitForWindows(count));
            type(window(count - 1), Qt::Key_X);
        }
    }
    void openUnchanged(const QString& name) {
        const std::size_t count = controller.windows().size() + 1;
        controller.open(folder.write(name, "[1"));
        ASSERT_TRUE(waitForWindows(count));
    }
    /// A document without a file.
    void makeUntitled() {
        controller.newDocument();
        controller.windows().back()->treeEditor().insert(true);
        controller.windows().back()->finishEditing();
        ASSERT_TRUE(controller.windows().back()->document().isModified());
    }
    static void type(EditorView& view, Qt::Key key) {
        TextView& text = view.textEditor()->textView();
        text.setSelectedRange({0, 0});
        QTest::keyClick(&text, key);
    }
    bool waitForWindows(std::size_t count) {
        return QTest::qWaitFor([=, this] {
            return controller.windows().size() == count &&
                   std::ranges::none_of(controller.windows(), &EditorView::isOpening);
        });
    }

    QList<QMessageBox*> boxes() const {
        QList<QMessageBox*> found;
        for (const EditorView* view : controller.windows())
            for (QMessageBox* box : view->findChildren<QMessageBox*>())
                if (box->isVisible())
                    found += box;
        return found;
    }
    QMessageBox* waitForBox() {
        return QTest::qWaitFor([this] { return boxes().size() == 1; }) ? boxes().front() : nullptr;
    }
    void answer(const QString& title) {
        const QPointer<QMessageBox> box = waitForBox();
        ASSERT_NE(box, nullptr);
        const auto buttons = box->buttons();
        const auto button = std::ranges::find(buttons, title, &QAbstractButton::text);
        ASSERT_NE(button, buttons.end()) << title.toStdString();
        QTest::mouseClick(*button, Qt::LeftButton);
        ASSERT_TRUE(QTest::qWaitFor([&] { return box.isNull(); }));
    }
    QFileDialog* waitForDialog() {
        const auto shown = [this]() -> QFileDialog* {
            for (const EditorView* view : controller.windows())
                for (auto* dialog : view->findChildren<QFileDialog*>())
                    if (dialog->isVisible())
                        return dialog;
            return nullptr;
        };
        return QTest::qWaitFor([&] { return shown() != nullptr; }) ? shown() : nullptr;
    }
    bool allClose() {
        return QTest::qWaitFor([this] { return controller.windows().empty(); });
    }

    const QString a = QStringLiteral("a.json");
    const QString b = QStringLiteral("b.json");
    const QString c = QStringLiteral("c.json");
    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[](EditorView&) {}};
};

TEST_F(QuittingTests, OneChangedDocumentIsAskedAboutAsWhenItsWindowCloses) {
    openUnchanged(b);
    openChanged({a});
    controller.quit();
    QMessageBox* box = waitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), QStringLiteral("¿Quieres guardar los cambios de \"a.json\"?"));
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(allClose());
    EXPECT_EQ(saved(a), "[1");
}

TEST_F(QuittingTests, SeveralAreAskedAboutTogetherByName) {
    openChanged({a, b});
    openUnchanged(c);
    makeUntitled();
    controller.quit();
    QMessageBox* box = waitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), QStringLiteral("Hay cambios sin guardar en 3 documentos."));
    EXPECT_EQ(box->informativeText(),
              QStringLiteral("¿Quieres guardar los cambios de \"a.json\", \"b.json\" y \"Sin título\"?"));
    QStringList titles;
    for (const QAbstractButton* button : box->buttons())
        titles += button->text();
    titles.sort();
    EXPECT_EQ(titles,
              (QStringList{QStringLiteral("Cancelar"), QStringLiteral("Guardar todo"), QStringLiteral("No guardar")}));
    EXPECT_EQ(box->defaultButton()->text(), QStringLiteral("Guardar todo"));
    controller.quit();
    EXPECT_EQ(boxes().size(), 1);
    QTest::keyClick(box, Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([this] { return boxes().isEmpty(); }));
    EXPECT_EQ(controller.windows().size(), 4u);
}

TEST_F(QuittingTests, FilesOfTheSameNameAreToldApart) {
    ASSERT_TRUE(QDir().mkdir(path(QStringLiteral("x"))));
    openChanged({a, QStringLiteral("x/a.json")});
    controller.quit();
    QMessageBox* box = waitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->informativeText().contains(QStringLiteral("/x)"))) << box->informativeText().toStdString();
    answer(QStringLiteral("Cancelar"));
}

TEST_F(QuittingTests, SavingAllSavesEachAndEnds) {
    openChanged({a, b, c});
    controller.quit();
    answer(QStringLiteral("Guardar todo"));
    EXPECT_TRUE(allClose());
    for (const QString& name : {a, b, c})
        EXPECT_EQ(saved(name), "x[1");
    EXPECT_EQ(Session::take(), (QStringList{path(a), path(b), path(c)}));
}

TEST_F(QuittingTests, SavingAllAsksForTheFilesOfUntitledDocumentsOneAfterTheOther) {
    openChanged({a});
    makeUntitled();
    makeUntitled();
    controller.quit();
    answer(QStringLiteral("Guardar todo"));
    for (const QString& name : {QStringLiteral("u1"), QStringLiteral("u2")}) {
        QPointer<QFileDialog> dialog = waitForDialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(saved(a), "x[1") << "what needs no dialog is saved first";
        dialog->findChild<QLineEdit*>()->setText(path(name));
        QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return dialog.isNull(); }));
    }
    EXPECT_TRUE(allClose());
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("u1.json"))));
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("u2.json"))));
}

TEST_F(QuittingTests, CancellingADialogLeavesEverythingOpen) {
    openChanged({a});
    makeUntitled();
    controller.quit();
    answer(QStringLiteral("Guardar todo"));
    QFileDialog* dialog = waitForDialog();
    ASSERT_NE(dialog, nullptr);
    dialog->reject();
    QCoreApplication::processEvents();
    EXPECT_EQ(controller.windows().size(), 2u);
    EXPECT_EQ(saved(a), "x[1");
    // Nothing of the quitting is left: one window closes alone.
    window(0).close();
    EXPECT_TRUE(waitForWindows(1));
    EXPECT_TRUE(window(0).document().isModified());
}

TEST_F(QuittingTests, AFileThatCannotBeSavedLeavesEverythingOpen) {
    openChanged({a, b});
    ASSERT_TRUE(QFile::remove(path(a)));
    ASSERT_TRUE(QDir().mkdir(path(a)));
    controller.quit();
    answer(QStringLiteral("Guardar todo"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return saved(b) == "x[1" && !window(1).document().isModified(); }));
    QMessageBox* box = waitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(controller.windows().size(), 2u);
    EXPECT_TRUE(window(0).document().isModified());
    EXPECT_EQ(Session::take(), QStringList());
    box->close();
}

TEST_F(QuittingTests, AConflictWithAnotherProgramHoldsTheQuittingUpOnly) {
    openChanged({a, b});
    openUnchanged(c);
    controller.quit();
    ASSERT_NE(waitForBox(), nullptr);
    folder.write(a, "[1,7]");
    answer(QStringLiteral("Guardar todo"));
    ASSERT_TRUE(QTest::qWaitFor([this] {
        return boxes().size() == 1 && boxes().front()->text().contains(QStringLiteral("ha cambiado en el disco")) &&
               saved(b) == "x[1";
    }));
    EXPECT_EQ(saved(a), "[1,7]");
    answer(QStringLiteral("Conservar lo mío"));
    EXPECT_TRUE(allClose());
    EXPECT_EQ(saved(a), "x[1");
    EXPECT_EQ(Session::take(), (QStringList{path(a), path(b), path(c)}));
}

TEST_F(QuittingTests, NotSavingEndsAndLeavesTheFiles) {
    openChanged({a, b});
    controller.quit();
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(allClose());
    EXPECT_EQ(saved(a), "[1");
    EXPECT_EQ(saved(b), "[1");
}

TEST_F(QuittingTests, CancellingClosesNoneAndForgetsTheQuitting) {
    openChanged({a, b});
    controller.quit();
    answer(QStringLiteral("Cancelar"));
    EXPECT_EQ(controller.windows().size(), 2u);
    EXPECT_TRUE(window(0).document().isModified());
    EXPECT_EQ(Session::take(), QStringList());
    window(0).close();
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(waitForWindows(1));
}

TEST_F(QuittingTests, TheQuestionTakesThePlaceOfThatAboutAWindow) {
    openChanged({a, b});
    window(0).close();
    ASSERT_NE(waitForBox(), nullptr);
    controller.quit();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return boxes().size() == 1 && boxes().front()->text().startsWith(QStringLiteral("Hay cambios")); }));
    answer(QStringLiteral("No guardar"));
    EXPECT_TRUE(allClose());
}

TEST_F(QuittingTests, WhatIsSavedWhileTheQuestionIsOpenIsNotAskedAboutAnyMore) {
    openChanged({a, b});
    controller.quit();
    ASSERT_NE(waitForBox(), nullptr);
    controller.save(window(0));
    controller.save(window(1));
    EXPECT_TRUE(allClose());
    EXPECT_EQ(saved(a), "x[1");
    EXPECT_EQ(saved(b), "x[1");
}

} // namespace
} // namespace quelm
