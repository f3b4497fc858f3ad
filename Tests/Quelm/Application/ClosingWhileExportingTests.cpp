#include "Quelm/Application/DocumentController.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QFile>
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

namespace quelm {
namespace {

class ClosingWhileExportingTests : public testing::Test {
protected:
    void SetUp() override {
        controller.newDocument();
        window = controller.windows().front();
    }
    void startExport(const QString& path) {
        window->model().writeExport(
            std::make_shared<const ExportDocument>(window->document().snapshot(), JSONStyle::compact()), path);
        ASSERT_TRUE(window->model().isExporting());
    }
    QString good() const { return folder.path(QStringLiteral("copia.json")); }
    QString bad() const { return folder.path(QStringLiteral("falta/copia.json")); }
    void change() { window->treeEditor().insert(true); }
    bool closes() {
        return QTest::qWaitFor([this] { return !window; });
    }
    bool hasFailed() {
        return QTest::qWaitFor([this] { return window->model().errorMessage().has_value(); });
    }
    void answer(const char* title) {
        auto* box = window->findChild<QMessageBox*>();
        ASSERT_NE(box, nullptr);
        const auto buttons = box->buttons();
        const auto button = std::ranges::find(buttons, QString::fromUtf8(title), &QAbstractButton::text);
        ASSERT_NE(button, buttons.end());
        QTest::mouseClick(*button, Qt::LeftButton);
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[](EditorView&) {}};
    QPointer<EditorView> window;
};

TEST_F(ClosingWhileExportingTests, TheWindowClosesWhenTheFileIsWritten) {
    startExport(good());
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(closes());
    EXPECT_TRUE(QFile::exists(good()));
}

TEST_F(ClosingWhileExportingTests, TheWindowStaysWhenTheFileCannotBeWritten) {
    startExport(bad());
    EXPECT_FALSE(window->close());
    ASSERT_TRUE(hasFailed());
    QTest::qWait(0);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(closes());
}

TEST_F(ClosingWhileExportingTests, AnExportThatEndsByItselfClosesNothing) {
    startExport(good());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isExporting(); }));
    QTest::qWait(0);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ClosingWhileExportingTests, ChangesAreAskedAboutFirst) {
    change();
    startExport(good());
    window->close();
    answer("No guardar");
    EXPECT_TRUE(closes());
    EXPECT_TRUE(QFile::exists(good()));
}

TEST_F(ClosingWhileExportingTests, ChangesThatWereToBeDiscardedAreAskedAboutAgainAfterAFailure) {
    change();
    startExport(bad());
    window->close();
    answer("No guardar");
    ASSERT_TRUE(hasFailed());
    window->model().setErrorMessage(std::nullopt);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->findChild<QMessageBox*>(); }));
    EXPECT_FALSE(window->close());
    answer("No guardar");
    EXPECT_TRUE(closes());
}

TEST_F(ClosingWhileExportingTests, QuittingWaitsForTheFileAndThenClosesAll) {
    controller.newDocument();
    startExport(good());
    controller.quit();
    EXPECT_EQ(controller.windows().size(), 2u);
    EXPECT_TRUE(QTest::qWaitFor([this] { return controller.windows().empty(); }));
    EXPECT_TRUE(QFile::exists(good()));
}

TEST_F(ClosingWhileExportingTests, AFailureEndsQuitting) {
    controller.newDocument();
    startExport(bad());
    controller.quit();
    ASSERT_TRUE(hasFailed());
    QTest::qWait(0);
    EXPECT_EQ(controller.windows().size(), 2u);
    startExport(good());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isExporting(); }));
    QTest::qWait(0);
    EXPECT_EQ(controller.windows().size(), 2u);
}

TEST_F(ClosingWhileExportingTests, ABusyDocumentDoesNotHoldTheWindowUp) {
    window->model().format(JSONStyle::compact());
    ASSERT_TRUE(window->model().isBusy());
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(closes());
}

} // namespace
} // namespace quelm
