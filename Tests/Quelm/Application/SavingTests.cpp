#include "Tests/Quelm/Application/ChangedDocumentTest.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>

#include <algorithm>

// Saving while the document goes on being edited, and where it is saved.

namespace quelm {
namespace {

class SavingTests : public ChangedDocumentTest {
protected:
    std::string saved() const { return TemporaryFolder::contents(path); }
    static bool hasAlert() {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        return std::ranges::any_of(
            widgets, [](QWidget* widget) { return qobject_cast<QMessageBox*>(widget) && widget->isVisible(); });
    }
    QFileDialog* saveAs() {
        controller.saveAs(*window);
        return window->findChild<QFileDialog*>();
    }
    static QLineEdit* fieldOf(QFileDialog* dialog) { return dialog->findChild<QLineEdit*>(); }
    static QString nameIn(QFileDialog* dialog) { return dialog->selectedFiles().value(0).section(u'/', -1); }
};

TEST_F(SavingTests, WhatIsTypedMeanwhileIsNotSavedAndStaysAChange) {
    openAndType();
    controller.save(*window);
    QTest::keyClick(&view(), Qt::Key_Y);
    ASSERT_TRUE(QTest::qWaitFor([this] { return saved() == "x[1"; }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !controller.isInHand(*window); }));
    EXPECT_TRUE(window->document().isModified());
    window->undoManager().undo();
    EXPECT_FALSE(window->document().isModified()) << "that is what the file holds";
}

TEST_F(SavingTests, SavingAgainMeanwhileSavesWhatThereIsThen) {
    openAndType();
    controller.save(*window);
    QTest::keyClick(&view(), Qt::Key_Y);
    controller.save(*window);
    controller.save(*window);
    ASSERT_TRUE(QTest::qWaitFor([this] { return saved() == "xy[1" && !window->document().isModified(); }));
}

TEST_F(SavingTests, SavingThatIsCancelledLeavesTheFileAndSaysNothing) {
    openAndType();
    // The one thread of saving has its hands full.
    controller.open(folder.write(QStringLiteral("grande.json"), arrayOfZeros(4'000'000)));
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return controller.windows().size() == 2 && !controller.windows().back()->isOpening(); }, 60'000));
    controller.save(*controller.windows().back());
    controller.save(*window);
    window->close();
    Q_EMIT window->model().savingCancelled();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !controller.isInHand(*window); }, 60'000));
    EXPECT_EQ(saved(), "[1");
    EXPECT_TRUE(window->document().isModified());
    EXPECT_TRUE(window->isVisible()) << "it is not closed unsaved";
    EXPECT_FALSE(hasAlert());
    controller.save(*window);
    EXPECT_TRUE(QTest::qWaitFor([this] { return saved() == "x[1"; }, 60'000)) << "saving works again";
}

TEST_F(SavingTests, TheDialogKeepsTheNameWithTheExtensionThatItHas) {
    openAndType();
    for (const char* name : {"mapa.geojson", "notas.json", "datos", "a.b.txt", ".eslintrc"}) {
        window->document().configuration().setFileLocation(folder.path(QString::fromUtf8(name)));
        QPointer<QFileDialog> dialog = saveAs();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(nameIn(dialog), QString::fromUtf8(name));
        dialog->reject();
        ASSERT_TRUE(QTest::qWaitFor([&] { return dialog.isNull(); }));
    }
}

TEST_F(SavingTests, AnotherNameWithoutAnExtensionGetsTheUsualOne) {
    openAndType();
    window->document().configuration().setFileLocation(folder.path(QStringLiteral("datos")));
    QFileDialog* dialog = saveAs();
    ASSERT_NE(dialog, nullptr);
    fieldOf(dialog)->setText(QStringLiteral("otros"));
    EXPECT_EQ(nameIn(dialog), QStringLiteral("otros.json"));
    fieldOf(dialog)->setText(QStringLiteral("otros.txt"));
    EXPECT_EQ(nameIn(dialog), QStringLiteral("otros.txt"));
    QTest::keyClick(fieldOf(dialog), Qt::Key_Return);
    const QString chosen = folder.path(QStringLiteral("otros.txt"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(chosen); }));
    EXPECT_EQ(TemporaryFolder::contents(chosen), "x[1");
}

TEST_F(SavingTests, TheDialogStartsInWhatIsLeftOfTheFolder) {
    openAndType();
    window->document().configuration().setFileLocation(folder.path(QStringLiteral("ya/no/esta.json")));
    QFileDialog* dialog = saveAs();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->directory(), QDir(folder.path(QString())));
    EXPECT_EQ(nameIn(dialog), QStringLiteral("esta.json"));
}

} // namespace
} // namespace quelm
