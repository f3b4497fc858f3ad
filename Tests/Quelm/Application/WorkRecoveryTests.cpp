#include "Quelm/Application/WorkRecovery.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTest>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using testing::HasSubstr;

/// One run of the program after another, with one recovery folder.
class WorkRecoveryTests : public testing::Test {
protected:
    /// A run that comes to an unexpected end: what is open is lost, but for the journals.
    struct Run {
        explicit Run(const QString& recoveryFolder) : recovery(controller, recoveryFolder) {
            controller.keepJournals(recoveryFolder);
        }
        DocumentController controller{[](EditorView&) {}};
        WorkRecovery recovery;
    };

    WorkRecoveryTests() { Preferences::setInitialMode(Preferences::InitialMode::text); }

    void begin() { run = std::make_unique<Run>(recoveryFolder()); }
    void crash() { run.reset(); }
    QString recoveryFolder() const { return folder.path(QStringLiteral("recovery")); }

    EditorView& open(const QString& path) {
        run->controller.open(path);
        EditorView* window = run->controller.windows().back();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isOpening() && window->isVisible(); }));
        return *window;
    }
    EditorView& openNew() {
        run->controller.newDocument();
        return *run->controller.windows().back();
    }
    static void type(EditorView& window, const QString& text) {
        TextView& view = window.textEditor()->textView();
        view.setSelectedRange({0, 0});
        QTest::keyClicks(&view, text);
    }

    /// Looks for what is left behind until the question about it, or an alert, is there; null when there is nothing.
    QMessageBox* askedToRecover() {
        run->recovery.start();
        QMessageBox* box = nullptr;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            box = shownBox();
            return box || run->recovery.isIdle();
        }));
        return box;
    }
    static QMessageBox* shownBox() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* box = qobject_cast<QMessageBox*>(widget); box && box->isVisible())
                return box;
        return nullptr;
    }
    void answer(QMessageBox* box, const QString& title) {
        ASSERT_NE(box, nullptr);
        for (QAbstractButton* button : box->buttons())
            if (button->text() == title)
                QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return run->recovery.isIdle(); }));
    }
    QStringList journals() const {
        return QDir(recoveryFolder()).entryList({QStringLiteral("*.journal")}, QDir::Files);
    }
    static std::string textOf(EditorView& window) {
        return std::string(JSONDocument::fileContents(window.document().snapshot()).view());
    }
    static std::string fileText(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    std::unique_ptr<Run> run;
};

TEST_F(WorkRecoveryTests, NothingIsAskedWhenNothingWasLeftBehind) {
    begin();
    EXPECT_EQ(askedToRecover(), nullptr);
    EXPECT_TRUE(run->controller.windows().empty());
}

TEST_F(WorkRecoveryTests, UnsavedChangesComeBackAsAnEditedDocumentAndTheFileStays) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral(" x"));
    crash();

    begin();
    QMessageBox* question = askedToRecover();
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->text(), QStringLiteral("Quelm se cerró inesperadamente. ¿Quieres recuperar los cambios sin "
                                               "guardar de \"a.json\"?"));
    answer(question, QStringLiteral("Recuperar"));
    // The window in which to ask was an empty document, which is gone.
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().size() == 1; }));
    EditorView& window = *run->controller.windows().front();
    EXPECT_EQ(textOf(window), " x[1]");
    EXPECT_TRUE(window.document().isModified());
    EXPECT_EQ(window.document().configuration().fileLocation(), path);
    EXPECT_EQ(fileText(path), "[1]");

    run->controller.save(window);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isModified(); }));
    EXPECT_EQ(fileText(path), " x[1]");
    ASSERT_TRUE(QTest::qWaitFor([&] { return journals().isEmpty(); }));
}

TEST_F(WorkRecoveryTests, AnEmptyWindowWithSomethingToTellStays) {
    begin();
    type(open(folder.write(QStringLiteral("a.json"), "[1]")), QStringLiteral("x"));
    crash();
    begin();
    QMessageBox* question = askedToRecover();
    ASSERT_NE(question, nullptr);
    run->controller.tell(run->controller.windows().front(), QStringLiteral("Aviso"), QString());
    answer(question, QStringLiteral("Recuperar"));
    ASSERT_EQ(run->controller.windows().size(), 2u);
    ASSERT_NE(shownBox(), nullptr);
    EXPECT_EQ(shownBox()->text(), QStringLiteral("Aviso"));
}

TEST_F(WorkRecoveryTests, WhatIsRecoveredAndEditedComesBackAgain) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral("x"));
    crash();
    begin();
    answer(askedToRecover(), QStringLiteral("Recuperar"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().size() == 1; }));
    type(*run->controller.windows().front(), QStringLiteral("y"));
    crash();
    begin();
    answer(askedToRecover(), QStringLiteral("Recuperar"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().size() == 1; }));
    EXPECT_EQ(textOf(*run->controller.windows().front()), "yx[1]");
}

TEST_F(WorkRecoveryTests, ADocumentWithoutAFileComesBack) {
    begin();
    EditorView& window = openNew();
    window.treeEditor().insert(true);
    const std::string text = textOf(window);
    crash();
    begin();
    QMessageBox* question = askedToRecover();
    ASSERT_NE(question, nullptr);
    EXPECT_THAT(question->text().toStdString(), HasSubstr("\"Sin título\""));
    answer(question, QStringLiteral("Recuperar"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().size() == 1; }));
    EditorView& recovered = *run->controller.windows().front();
    EXPECT_EQ(textOf(recovered), text);
    EXPECT_EQ(recovered.document().mode(), EditorMode::tree);
    EXPECT_TRUE(recovered.document().isModified());
    EXPECT_FALSE(recovered.document().configuration().fileLocation());
}

TEST_F(WorkRecoveryTests, TheWindowThatHasTheFileAlreadyTakesWhatIsRecovered) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral("x"));
    crash();
    begin();
    EditorView& window = open(path);
    answer(askedToRecover(), QStringLiteral("Recuperar"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.document().isModified(); }));
    EXPECT_EQ(run->controller.windows().size(), 1U);
    EXPECT_EQ(textOf(window), "x[1]");
}

TEST_F(WorkRecoveryTests, AWindowThatIsStillOpeningTheFileTakesWhatIsRecovered) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral("x"));
    crash();
    begin();
    std::vector<LeftBehind> leftBehind = findLeftBehind(recoveryFolder());
    ASSERT_EQ(leftBehind.size(), 1U);
    auto recovered = recover(std::move(leftBehind.front()));
    ASSERT_TRUE(recovered);
    run->controller.open(path);
    ASSERT_TRUE(run->controller.windows().front()->isOpening());
    EditorView& window = run->controller.openRecovered(*std::move(recovered));
    EXPECT_EQ(run->controller.windows().size(), 1U);
    EXPECT_FALSE(window.isOpening());
    EXPECT_EQ(textOf(window), "x[1]");
    EXPECT_EQ(window.document().configuration().fileLocation(), path);
    // What was being read does not come after it.
    backgroundThreads().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(textOf(window), "x[1]");
}

TEST_F(WorkRecoveryTests, ChangesThatAreNotWantedAreGone) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral("x"));
    crash();
    begin();
    answer(askedToRecover(), QStringLiteral("Descartar"));
    EXPECT_TRUE(journals().isEmpty());
    EXPECT_EQ(fileText(path), "[1]");
}

TEST_F(WorkRecoveryTests, WhatIsLeftForLaterIsOfferedAtTheNextStart) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral("x"));
    crash();
    begin();
    answer(askedToRecover(), QStringLiteral("Más tarde"));
    EXPECT_EQ(journals().size(), 1);
    crash();
    begin();
    EXPECT_NE(askedToRecover(), nullptr);
}

TEST_F(WorkRecoveryTests, ChangesOfAFileThatIsAnotherNowAreKeptAsideAndThatIsSaid) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    type(open(path), QStringLiteral("x"));
    crash();
    folder.write(QStringLiteral("a.json"), "[2]");
    begin();
    QMessageBox* alert = askedToRecover();
    ASSERT_NE(alert, nullptr);
    EXPECT_THAT(alert->text().toStdString(), HasSubstr("no se pueden recuperar"));
    EXPECT_THAT(alert->informativeText().toStdString(), HasSubstr("«a.json»"));
    EXPECT_THAT(alert->informativeText().toStdString(), HasSubstr(recoveryFolder().toStdString()));
    EXPECT_TRUE(journals().isEmpty());
    EXPECT_EQ(QDir(recoveryFolder()).entryList(QDir::Files).size(), 1);
    EXPECT_EQ(fileText(path), "[2]");
}

TEST_F(WorkRecoveryTests, ChangesOfAFileThatChangedWhileTheyWereOpenComeBackWhole) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    EditorView& window = open(path);
    type(window, QStringLiteral("x"));
    folder.write(QStringLiteral("a.json"), "[2, 3]");
    ASSERT_TRUE(QTest::qWaitFor([] { return shownBox() != nullptr; }));
    crash();
    begin();
    QMessageBox* question = askedToRecover();
    ASSERT_NE(question, nullptr);
    EXPECT_THAT(question->text().toStdString(), HasSubstr("¿Quieres recuperar"));
    answer(question, QStringLiteral("Recuperar"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().size() == 1; }));
    EXPECT_EQ(textOf(*run->controller.windows().front()), "x[1]");
    EXPECT_EQ(fileText(path), "[2, 3]");
}

TEST_F(WorkRecoveryTests, ChangesOfAFileThatWasDeletedWhileTheyWereOpenComeBackWhole) {
    const std::string text = "[\"" + std::string(2000, 'a') + "\"]";
    const QString path = folder.write(QStringLiteral("a.json"), text);
    begin();
    EditorView& window = open(path);
    type(window, QStringLiteral("x"));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QTest::qWaitFor([] { return shownBox() != nullptr; }));
    shownBox()->close();
    ASSERT_TRUE(QTest::qWaitFor([] { return shownBox() == nullptr; }));
    type(window, QStringLiteral("y"));
    crash();
    begin();
    QMessageBox* question = askedToRecover();
    ASSERT_NE(question, nullptr);
    EXPECT_THAT(question->text().toStdString(), HasSubstr("¿Quieres recuperar"));
    answer(question, QStringLiteral("Recuperar"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().size() == 1; }));
    EXPECT_EQ(textOf(*run->controller.windows().front()), "yx" + text);
}

TEST_F(WorkRecoveryTests, AWindowThatIsClosedWithoutSavingLeavesNothing) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    begin();
    EditorView& window = open(path);
    type(window, QStringLiteral("x"));
    window.close();
    ASSERT_TRUE(QTest::qWaitFor([] { return shownBox() != nullptr; }));
    for (QAbstractButton* button : shownBox()->buttons())
        if (button->text() == QStringLiteral("No guardar"))
            QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->controller.windows().empty() && journals().isEmpty(); }));
    crash();
    begin();
    EXPECT_EQ(askedToRecover(), nullptr);
}

} // namespace
} // namespace quelm
