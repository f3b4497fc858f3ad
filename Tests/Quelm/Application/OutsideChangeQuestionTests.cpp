#include "Tests/Quelm/Application/OutsideChangesTest.h"

#include <QFileDialog>

#include <gtest/gtest.h>
#include <unistd.h>

// What becomes of changes when their file has got others.

namespace quelm {
namespace {

class OutsideChangeQuestionTests : public OutsideChangesTest {
protected:
    void openAndEdit() {
        open("[1]");
        editTree("2");
    }
    /// With the change noticed.
    void openAndAsk() {
        openAndEdit();
        replace("[7]");
        ASSERT_TRUE(waitForBox(changedText));
    }
    /// With the change not noticed before the document is saved.
    void changeUnnoticed(std::string_view bytes) {
        // As a network's folder does.
        const QString link = folder.path(QStringLiteral("otro nombre.json"));
        ASSERT_EQ(::link(path.toLocal8Bit(), link.toLocal8Bit()), 0);
        std::ofstream(link.toStdString()) << bytes;
        ASSERT_TRUE(QFile::remove(link));
    }
    std::string fileContents() const { return TemporaryFolder::contents(path); }
    bool isSaved() const {
        return QTest::qWaitFor([this] { return !isEdited(); });
    }
};

TEST_F(OutsideChangeQuestionTests, AnEditedDocumentIsAskedAboutAndStays) {
    openAndAsk();
    EXPECT_EQ(
        box()->informativeText(),
        QStringLiteral("Otro programa lo ha modificado y aquí hay cambios sin guardar. Si recargas el archivo, los "
                       "perderás. Si los conservas, el archivo se queda como está hasta que guardes."));
    EXPECT_EQ(box()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(content(), "[2]");
    EXPECT_EQ(fileContents(), "[7]");
}

TEST_F(OutsideChangeQuestionTests, RecargarShowsTheFileWithoutTheChanges) {
    openAndAsk();
    answer("Recargar");
    EXPECT_TRUE(waitForContent("[7]"));
    EXPECT_FALSE(window->undoManager().canUndo());
    EXPECT_FALSE(tree().isReadOnly());
    EXPECT_EQ(document().mode(), EditorMode::tree);
}

TEST_F(OutsideChangeQuestionTests, RecargarOfAFileThatIsGoneLosesNothing) {
    openAndAsk();
    ASSERT_TRUE(QFile::remove(path));
    answer("Recargar");
    ASSERT_TRUE(waitForBox("No se pudo volver a leer «datos.json»."));
    EXPECT_EQ(content(), "[2]");
    EXPECT_TRUE(isEdited());
    EXPECT_FALSE(tree().isReadOnly());
}

TEST_F(OutsideChangeQuestionTests, ConservarAgreesToSavingOverTheChange) {
    openAndAsk();
    answer("Conservar lo mío");
    ASSERT_TRUE(waitForNoBox());
    settle();
    EXPECT_EQ(box(), nullptr) << "it is asked once";
    EXPECT_EQ(content(), "[2]");
    EXPECT_EQ(fileContents(), "[7]");
    controller.save(*window);
    EXPECT_TRUE(isSaved());
    EXPECT_EQ(fileContents(), "[2]");
    EXPECT_EQ(box(), nullptr);
}

/// What a key does that the user meant for the document, or the wish to be rid of a box.
using Leaving = void (*)(QMessageBox&);
constexpr Leaving leavings[] = {[](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); },
                                [](QMessageBox& box) { QTest::keyClick(box.focusWidget(), Qt::Key_Space); },
                                [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); },
                                [](QMessageBox& box) { box.close(); }};

TEST_F(OutsideChangeQuestionTests, AQuestionThatIsOnlyLeftIsAskedAgainBeforeSaving) {
    for (const Leaving leave : leavings) {
        openAndAsk();
        leave(*box());
        ASSERT_TRUE(waitForNoBox());
        settle();
        EXPECT_EQ(box(), nullptr) << "it is asked once";
        controller.save(*window);
        ASSERT_TRUE(waitForBox(changedText));
        EXPECT_EQ(fileContents(), "[7]");
        answer("Conservar lo mío");
        EXPECT_TRUE(isSaved());
        EXPECT_EQ(fileContents(), "[2]");
        window->close();
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window; }));
    }
}

TEST_F(OutsideChangeQuestionTests, LeavingTheQuestionBeforeSavingSavesNothing) {
    for (const Leaving leave : leavings) {
        openAndEdit();
        changeUnnoticed("[1,7]");
        window->close();
        answer("Guardar");
        ASSERT_TRUE(waitForBox(changedText));
        leave(*box());
        ASSERT_TRUE(waitForNoBox());
        settle();
        EXPECT_EQ(fileContents(), "[1,7]");
        ASSERT_TRUE(window) << "it was about to close";
        EXPECT_TRUE(isEdited());
        controller.save(*window);
        EXPECT_TRUE(waitForBox(changedText)) << "nothing was agreed to";
        answer("Conservar lo mío");
        EXPECT_TRUE(isSaved());
        window->close();
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window; }));
    }
}

TEST_F(OutsideChangeQuestionTests, WhatIsKeptIsNotSavedByUndoing) {
    openAndAsk();
    answer("Conservar lo mío");
    ASSERT_TRUE(waitForNoBox());
    window->undoManager().undo();
    EXPECT_TRUE(isEdited()) << "the file holds something else";
    settle();
    EXPECT_EQ(content(), "[1]");
}

TEST_F(OutsideChangeQuestionTests, AnotherChangeIsAskedAboutAgain) {
    openAndAsk();
    answer("Conservar lo mío");
    ASSERT_TRUE(waitForNoBox());
    replace("[8]");
    ASSERT_TRUE(waitForBox(changedText));
    answer("Recargar");
    EXPECT_TRUE(waitForContent("[8]"));
}

TEST_F(OutsideChangeQuestionTests, AFileThatIsAgainWhatItWasIsNotAskedAbout) {
    openAndAsk();
    replace("[1]");
    EXPECT_TRUE(waitForNoBox());
    EXPECT_EQ(content(), "[2]");
}

TEST_F(OutsideChangeQuestionTests, AFileThatGoesMeanwhileIsToldInstead) {
    openAndAsk();
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(waitForBox(goneText));
    EXPECT_EQ(content(), "[2]");
}

TEST_F(OutsideChangeQuestionTests, GuardarComoAsksWhere) {
    openAndAsk();
    answer("Guardar como…");
    auto* dialog = window->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->reject();
    EXPECT_EQ(content(), "[2]");
    EXPECT_EQ(fileContents(), "[7]");
    settle();
    EXPECT_EQ(box(), nullptr);
    controller.save(*window);
    EXPECT_TRUE(waitForBox(changedText)) << "another file was to be written, and was not";
    EXPECT_EQ(fileContents(), "[7]");
    answer("Cancelar");
}

TEST_F(OutsideChangeQuestionTests, SavingUnderAnotherNameOfTheFileAsksToo) {
    openAndEdit();
    const QString link = folder.path(QStringLiteral("enlace.json"));
    ASSERT_TRUE(QFile::link(path, link));
    changeUnnoticed("[1,7]");
    controller.saveAs(*window);
    auto* dialog = window->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    Q_EMIT dialog->fileSelected(link);
    dialog->hide();
    EXPECT_TRUE(waitForBox(changedText));
    EXPECT_EQ(fileContents(), "[1,7]");
    answer("Cancelar");
}

TEST_F(OutsideChangeQuestionTests, RecargarSettlesTheQuestionAboutClosing) {
    openAndAsk();
    window->close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->findChildren<QMessageBox*>().size() == 2; }));
    for (QMessageBox* each : window->findChildren<QMessageBox*>())
        for (QAbstractButton* button : each->buttons())
            if (button->text() == QStringLiteral("Recargar"))
                button->click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window; })) << "nothing is left to ask about";
    EXPECT_EQ(fileContents(), "[7]");
}

TEST_F(OutsideChangeQuestionTests, SavingOverAChangeThatWasNotNoticedAsksFirst) {
    openAndEdit();
    changeUnnoticed("[1,7]");
    controller.save(*window);
    ASSERT_TRUE(waitForBox(changedText));
    EXPECT_EQ(fileContents(), "[1,7]");
    EXPECT_TRUE(isEdited());
    EXPECT_TRUE(box()->informativeText().contains(QStringLiteral("todavía no se ha guardado nada")));
    answer("Conservar lo mío");
    EXPECT_TRUE(isSaved());
    EXPECT_EQ(fileContents(), "[2]");
}

TEST_F(OutsideChangeQuestionTests, SavingCanBeGivenUpForWhatTheFileHolds) {
    openAndEdit();
    changeUnnoticed("[1,7]");
    controller.save(*window);
    ASSERT_TRUE(waitForBox(changedText));
    answer("Recargar");
    EXPECT_TRUE(waitForContent("[1,7]"));
    EXPECT_EQ(fileContents(), "[1,7]");
}

TEST_F(OutsideChangeQuestionTests, SavingTwiceAsksOnce) {
    openAndEdit();
    changeUnnoticed("[1,7]");
    controller.save(*window);
    controller.save(*window);
    ASSERT_TRUE(waitForBox(changedText));
    settle();
    answer("Conservar lo mío");
    EXPECT_TRUE(isSaved());
    EXPECT_TRUE(waitForNoBox());
    EXPECT_EQ(fileContents(), "[2]");
}

TEST_F(OutsideChangeQuestionTests, ClosingWithSavingGoesOnAfterTheAnswer) {
    openAndEdit();
    changeUnnoticed("[1,7]");
    window->close();
    answer("Guardar");
    ASSERT_TRUE(waitForBox(changedText));
    answer("Conservar lo mío");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window; }));
    EXPECT_EQ(fileContents(), "[2]");
}

TEST_F(OutsideChangeQuestionTests, AFileThatIsGoneIsSavedAnew) {
    openAndEdit();
    ASSERT_TRUE(QFile::remove(path));
    controller.save(*window);
    EXPECT_TRUE(isSaved());
    EXPECT_EQ(fileContents(), "[2]");
}

TEST_F(OutsideChangeQuestionTests, GivingTheChangesUpByHandSettlesTheQuestion) {
    openAndAsk();
    answer("Conservar lo mío");
    ASSERT_TRUE(waitForNoBox());
    controller.revert(*window);
    answer("Descartar");
    EXPECT_TRUE(waitForContent("[7]"));
    replace("[8]");
    EXPECT_TRUE(waitForContent("[8]"));
    EXPECT_EQ(box(), nullptr);
}

} // namespace
} // namespace quelm
