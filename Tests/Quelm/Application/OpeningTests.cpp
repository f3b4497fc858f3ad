#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/RecentFiles.h"
#include "Quelm/EditorWindow/OpeningPage.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

// Opening files that take their time, and what cannot be opened.

namespace quelm {
namespace {

class OpeningTests : public testing::Test {
protected:
    EditorView& window(std::size_t index = 0) { return *controller.windows().at(index); }
    static QMessageBox* alert() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* box = qobject_cast<QMessageBox*>(widget); box && box->isVisible())
                return box;
        return nullptr;
    }
    bool waitForWindows(std::size_t count) {
        return QTest::qWaitFor([=, this] {
            return controller.windows().size() == count &&
                   std::ranges::none_of(controller.windows(), &EditorView::isOpening);
        });
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[](EditorView&) {}};
};

TEST_F(OpeningTests, AFileThatTakesLongIsAnnouncedAndCanBeCancelled) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    {
        const BlockedThreads blocked;
        controller.open(path);
        EXPECT_FALSE(window().isVisible());
        ASSERT_TRUE(QTest::qWaitFor([&] { return window().isVisible(); }));
        EXPECT_TRUE(window().isOpening());
        controller.save(window());
        controller.saveAs(window());
        EXPECT_EQ(window().findChild<QDialog*>(), nullptr) << "there is nothing to save yet";
        auto* page = qobject_cast<OpeningPage*>(window().editorArea());
        ASSERT_NE(page, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([&] { return page->cancelButton() != nullptr; }));
        QTest::mouseClick(page->cancelButton(), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return controller.windows().empty(); }));
    }
    backgroundThreads().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(controller.windows().empty());
    EXPECT_EQ(alert(), nullptr);
    EXPECT_FALSE(controller.hasOnlyFailed());
}

TEST_F(OpeningTests, EscapeCancelsLikewise) {
    const BlockedThreads blocked;
    controller.open(folder.write(QStringLiteral("a.json"), "[1]"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window().isVisible(); }));
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return controller.windows().empty(); }));
}

TEST_F(OpeningTests, AFileThatIsOpenedTwiceQuicklyHasOneWindow) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    controller.open(path);
    controller.open(path);
    controller.open(QFileInfo(path).path() + QStringLiteral("/../") + QFileInfo(path).dir().dirName() +
                    QStringLiteral("/a.json"));
    EXPECT_EQ(controller.windows().size(), 1u);
    ASSERT_TRUE(waitForWindows(1));
}

TEST_F(OpeningTests, AnEmptyNameAndOneWithControlCharactersAreToldInWords) {
    controller.open(QString());
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), QStringLiteral("No se pudo abrir el archivo."));
    EXPECT_EQ(alert()->informativeText(), QStringLiteral("El nombre está vacío."));
    alert()->close();
    controller.open(folder.path(QStringLiteral("a\nb.json")));
    ASSERT_TRUE(QTest::qWaitFor([] { return alert() && alert()->text().contains(QStringLiteral(".json")); }));
    EXPECT_EQ(alert()->text(), QStringLiteral("No se pudo abrir «a⏎b.json»."));
    alert()->close();
    EXPECT_TRUE(controller.hasOnlyFailed());
}

TEST_F(OpeningTests, OfSeveralFilesEachComesInATurnOfItsOwn) {
    controller.open(QStringList{folder.write(QStringLiteral("a.json"), "[1]"),
                                folder.write(QStringLiteral("b.json"), "[2]"),
                                folder.write(QStringLiteral("c.json"), "[3]")});
    EXPECT_EQ(controller.windows().size(), 1u);
    ASSERT_TRUE(waitForWindows(3));
    EXPECT_EQ(window(2).document().configuration().displayName(), QStringLiteral("c.json"));
}

TEST_F(OpeningTests, OnlyAFileThatIsGoneIsForgotten) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    RecentFiles::note(path);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkpath(path));
    controller.open(path);
    ASSERT_TRUE(QTest::qWaitFor([] { return alert() != nullptr; }));
    alert()->close();
    EXPECT_EQ(RecentFiles::paths(), QStringList{path});
    ASSERT_TRUE(QDir().rmdir(path));
    controller.open(path);
    ASSERT_TRUE(QTest::qWaitFor([] { return alert() != nullptr; }));
    alert()->close();
    EXPECT_EQ(RecentFiles::paths(), QStringList());
}

TEST_F(OpeningTests, FilesOfTheSameNameHaveTheirFoldersInTheirTitles) {
    ASSERT_TRUE(QDir().mkpath(folder.path(QStringLiteral("x"))));
    const QString first = folder.write(QStringLiteral("a.json"), "[1]");
    controller.open(first);
    controller.open(folder.write(QStringLiteral("x/a.json"), "[2]"));
    controller.open(folder.write(QStringLiteral("b.json"), "[3]"));
    ASSERT_TRUE(waitForWindows(3));
    EXPECT_EQ(window(0).windowTitle(), QStringLiteral("a.json[*] (%1)").arg(QFileInfo(first).path()));
    EXPECT_EQ(window(1).windowTitle(), QStringLiteral("a.json[*] (%1/x)").arg(QFileInfo(first).path()));
    EXPECT_EQ(window(2).windowTitle(), QStringLiteral("b.json[*]"));
    window(1).close();
    ASSERT_TRUE(waitForWindows(2));
    EXPECT_EQ(window(0).windowTitle(), QStringLiteral("a.json[*]"));
}

} // namespace
} // namespace quelm
