#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/QuelmApp.h"
#include "Quelm/Application/SettingsView.h"
#include "Quelm/Application/WindowMenus.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QApplication>
#include <QFileDialog>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

// The window of the preferences beside those of documents.

namespace quelm {
namespace {

class SettingsWindowTests : public testing::Test {
protected:
    void SetUp() override {
        controller.newDocument();
        window = controller.windows().front();
        activate(*window);
    }
    static void activate(QWidget& shown) {
        shown.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&shown));
    }
    void openSettings() {
        QTest::keyClick(window->focusWidget(), Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_NE(settings(), nullptr);
        activate(*settings());
    }
    SettingsView* settings() const { return controller.settings(); }

    TemporaryPreferences preferences;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
    QPointer<EditorView> window;
};

TEST_F(SettingsWindowTests, IsOneForAllDocuments) {
    openSettings();
    EXPECT_EQ(settings()->parentWidget(), nullptr);
    const QPointer<SettingsView> first = settings();
    controller.newDocument();
    controller.showSettings();
    EXPECT_EQ(settings(), first);
    EXPECT_TRUE(first->isVisible());
}

TEST_F(SettingsWindowTests, ComesBackAfterItWasClosed) {
    openSettings();
    settings()->close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !settings(); }));
    activate(*window);
    openSettings();
    EXPECT_TRUE(settings()->isVisible());
}

TEST_F(SettingsWindowTests, TheKeysOfDocumentsDoNothingThere) {
    openSettings();
    const std::int64_t rows = window->treeEditor().outline().rowCount();
    const QSignalSpy changes(&window->document(), &JSONDocument::contentChanged);
    for (const Qt::Key key : {Qt::Key_E, Qt::Key_Return, Qt::Key_V, Qt::Key_C})
        QTest::keyClick(settings(), key, Qt::ControlModifier | Qt::ShiftModifier);
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_D, Qt::Key_Return, Qt::Key_L, Qt::Key_N})
        QTest::keyClick(settings(), key, Qt::ControlModifier);
    for (const Qt::Key key : {Qt::Key_B, Qt::Key_M, Qt::Key_Up, Qt::Key_Down})
        QTest::keyClick(settings(), key, Qt::ControlModifier | Qt::AltModifier);
    QTest::keyClick(settings(), Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);

    EXPECT_FALSE(window->model().isBusy());
    EXPECT_EQ(window->model().export_(), nullptr);
    EXPECT_FALSE(window->model().isGoToLinePresented());
    EXPECT_EQ(window->treeEditor().outline().rowCount(), rows);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(controller.windows().size(), 1u);
}

TEST_F(SettingsWindowTests, ClosesWithTheLastDocument) {
    openSettings();
    controller.newDocument();
    window->close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window; }));
    EXPECT_TRUE(settings() && settings()->isVisible());
    QSignalSpy idle(&controller, &DocumentController::becameIdle);
    controller.windows().front()->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !settings(); }));
    EXPECT_EQ(idle.count(), 1);
    EXPECT_TRUE(controller.isIdle());
}

TEST(QuelmAppWindowTests, AWindowThatIsMadeCountsOnceItIsShown) {
    const TemporaryPreferences preferences;
    QuelmApp quelm;
    EXPECT_FALSE(quelm.appDelegate().shouldTerminateAfterLastWindowClosed());
    quelm.documents().showSettings();
    EXPECT_TRUE(quelm.appDelegate().shouldTerminateAfterLastWindowClosed());
}

} // namespace
} // namespace quelm
