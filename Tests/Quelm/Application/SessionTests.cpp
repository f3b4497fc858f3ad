#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/Session.h"
#include "Quelm/Application/WindowPlaces.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QMessageBox>
#include <QSettings>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

// What of one run is there again in the next.

namespace quelm {
namespace {

class SessionTests : public testing::Test {
protected:
    bool waitForWindows(std::size_t count) {
        return QTest::qWaitFor([=, this] {
            return controller.windows().size() == count &&
                   std::ranges::none_of(controller.windows(), &EditorView::isOpening);
        });
    }
    QStringList paths() const {
        QStringList paths;
        for (const EditorView* window : controller.windows())
            paths += window->document().configuration().fileLocation().value_or(QString());
        return paths;
    }
    void quit() {
        controller.quit();
        ASSERT_TRUE(QTest::qWaitFor([this] { return controller.windows().empty(); }));
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QString a = folder.write(QStringLiteral("a.json"), "[1]");
    QString b = folder.write(QStringLiteral("b.json"), "[2]");
    DocumentController controller{[](EditorView&) {}};
};

TEST_F(SessionTests, WhatIsStoredIsTakenOnce) {
    EXPECT_EQ(Session::take(), QStringList());
    Session::store({a, b});
    EXPECT_EQ(Session::take(), (QStringList{a, b}));
    EXPECT_EQ(Session::take(), QStringList());
}

TEST_F(SessionTests, ItIsBounded) {
    Session::store(QStringList(1000, a));
    EXPECT_EQ(Session::take().size(), Session::maximumCount);
}

TEST_F(SessionTests, TheFilesThatWereOpenWhenTheUserQuitReturnInOrder) {
    controller.open(b);
    controller.newDocument();
    controller.open(a);
    ASSERT_TRUE(waitForWindows(3));
    quit();
    const QStringList session = Session::take();
    EXPECT_EQ(session, (QStringList{b, a})) << "an untitled document without changes is nothing to come back to";
    controller.reopen(session);
    ASSERT_TRUE(waitForWindows(2));
    EXPECT_EQ(paths(), session);
}

TEST_F(SessionTests, WindowsThatAreClosedOneByOneDoNotReturn) {
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    controller.windows().front()->close();
    ASSERT_TRUE(waitForWindows(0));
    EXPECT_EQ(Session::take(), QStringList());
}

TEST_F(SessionTests, FilesThatAreGoneAreLeftOutWithoutAWord) {
    controller.reopen({folder.path(QStringLiteral("nada.json")), a, folder.path(QStringLiteral("nada2.json"))});
    ASSERT_TRUE(waitForWindows(1));
    EXPECT_EQ(paths(), QStringList{a});
    for (const QWidget* widget : QApplication::topLevelWidgets())
        EXPECT_EQ(qobject_cast<const QMessageBox*>(widget), nullptr);
}

TEST_F(SessionTests, WhenAllOfThemAreGoneThereIsANewDocument) {
    controller.reopen({folder.path(QStringLiteral("nada.json")), folder.path(QStringLiteral("nada2.json"))});
    ASSERT_TRUE(QTest::qWaitFor([this] { return paths() == QStringList{QString()}; }));
    ASSERT_TRUE(waitForWindows(1));
    EXPECT_FALSE(controller.windows().front()->isOpening());
    EXPECT_FALSE(controller.hasOnlyFailed());
}

TEST_F(SessionTests, AProgramThatIsEndedRemembersItsFilesButForThoseWithChanges) {
    controller.open(a);
    controller.open(b);
    ASSERT_TRUE(waitForWindows(2));
    controller.windows().front()->treeEditor().insert(true);
    ASSERT_TRUE(controller.windows().front()->document().isModified());
    controller.rememberSession();
    EXPECT_EQ(Session::take(), QStringList{b});
}

TEST_F(SessionTests, QuittingWhileFilesReturnKeepsTheRestForTheNextTime) {
    controller.reopen({a, b});
    ASSERT_EQ(controller.windows().size(), 1u) << "the second one comes in its own turn";
    quit();
    QCoreApplication::processEvents();
    EXPECT_TRUE(controller.isIdle());
    EXPECT_EQ(Session::take(), (QStringList{a, b}));
}

TEST_F(SessionTests, WhatIsTypedIntoAFieldIsPartOfADocumentThatIsEnded) {
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    TreeEditor& tree = controller.windows().front()->treeEditor();
    tree.insert(true);
    ASSERT_TRUE(tree.editing().has_value());
    controller.rememberSession();
    EXPECT_FALSE(tree.editing().has_value());
}

TEST_F(SessionTests, AWindowReturnsToItsPlaceAndSize) {
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    const QRect area(60, 70, 500, 400);
    controller.windows().front()->setGeometry(area);
    quit();
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    EXPECT_EQ(controller.windows().front()->geometry(), area);
}

TEST_F(SessionTests, ANewWindowIsAsLargeAsTheOneBefore) {
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    controller.windows().front()->resize(520, 410);
    quit();
    controller.newDocument();
    EXPECT_EQ(controller.windows().front()->size(), QSize(520, 410));
}

TEST_F(SessionTests, AMaximisedWindowReturnsMaximisedAndWithItsSizeBehind) {
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    const QRect area(60, 70, 500, 400);
    EditorView* window = controller.windows().front();
    window->setGeometry(area);
    window->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMaximized(); }));
    quit();
    EXPECT_EQ(WindowPlaces::of(a), (WindowPlace{area, true}));
    controller.open(a);
    ASSERT_TRUE(waitForWindows(1));
    EXPECT_TRUE(controller.windows().front()->isMaximized());
}

TEST_F(SessionTests, APlaceThatNoScreenHasIsMovedToWhereItCanBeSeen) {
    QWidget widget;
    for (const QRect& area : {QRect(-5000, -5000, 500, 400), QRect(9000, 100, 500, 400), QRect(0, 0, 90000, 90000)}) {
        WindowPlace{area, false}.apply(widget);
        EXPECT_TRUE(widget.screen()->availableGeometry().contains(widget.geometry()));
    }
}

TEST_F(SessionTests, OnlyTheLastPlacesAreKept) {
    const WindowPlace place{QRect(1, 2, 300, 400), false};
    for (qsizetype index = 0; index <= WindowPlaces::maximumCount; ++index)
        WindowPlaces::note(QStringLiteral("/%1").arg(index), place);
    EXPECT_EQ(WindowPlaces::of(QStringLiteral("/0")), std::nullopt);
    EXPECT_EQ(WindowPlaces::of(QStringLiteral("/1")), place);
    EXPECT_EQ(WindowPlaces::last(), place);
}

TEST_F(SessionTests, PlacesThatSomebodyElseHasWrittenAreRead) {
    for (const char* text : {"", "1 2 3", "a b c d", "1 2 0 4", "1 2 3 -4", "1 2 3 4 maximum", "1 2 3 4 max 5",
                             "99999999999 2 3 4", "1 2 2147483647 4", "1  2 3 4"}) {
        Preferences::openStore()->setValue(QStringLiteral("lastWindow"), QString::fromUtf8(text));
        EXPECT_EQ(WindowPlaces::last(), std::nullopt) << text;
    }
    Preferences::openStore()->setValue(QStringLiteral("lastWindow"), QStringLiteral("-7 2 300 400 max"));
    EXPECT_EQ(WindowPlaces::last(), (WindowPlace{QRect(-7, 2, 300, 400), true}));
    Preferences::openStore()->setValue(QStringLiteral("fileWindows"), QStringList{QStringLiteral("/a")});
    EXPECT_EQ(WindowPlaces::of(QStringLiteral("/a")), std::nullopt);
}

} // namespace
} // namespace quelm
