#include "FileCore/WorkProgress.h"
#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/EditorWindow/PlainButton.h"
#include "Quelm/EditorWindow/ProgressLine.h"
#include "Quelm/EditorWindow/WorkIndicator.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

// What a window says of a document that is being read or saved.

namespace quelm {
namespace {

class EditorViewProgressTests : public EditorViewTest {
protected:
    void openWindow() {
        window = std::make_unique<EditorView>(std::make_shared<JSONDocument>(), nullptr, clock);
        window->noteOpeningStarted(progress);
        window->show();
    }
    OpeningPage* page() const { return qobject_cast<OpeningPage*>(window->editorArea()); }
    ProgressLine* line() const { return page()->findChild<ProgressLine*>(); }
    WorkIndicator* ring() const { return window->documentStatusBar().findChild<WorkIndicator*>(); }
    QAbstractButton* cancelButton() const { return window->documentStatusBar().findChildren<PlainButton*>().back(); }
    bool says(const QString& text) const {
        for (const QLabel* label : window->documentStatusBar().findChildren<QLabel*>())
            if (label->isVisible() && label->text() == text)
                return true;
        return false;
    }

    const std::shared_ptr<WorkProgress> progress = std::make_shared<WorkProgress>();
    static constexpr std::chrono::milliseconds oneMillisecond{1};
};

TEST_F(EditorViewProgressTests, ReadingThatTakesLongHasALineAndAButton) {
    openWindow();
    ASSERT_NE(page(), nullptr);
    clock.advance(EditorModel::patience - oneMillisecond);
    EXPECT_EQ(page()->cancelButton(), nullptr);
    progress->setTotal(200);
    progress->add(50);
    clock.advance(oneMillisecond);
    ASSERT_NE(page()->cancelButton(), nullptr);
    EXPECT_EQ(page()->cancelButton()->text(), QStringLiteral("Cancelar"));
    EXPECT_EQ(line()->value() * 100 / line()->maximum(), 25);
    progress->add(50);
    EXPECT_TRUE(QTest::qWaitFor([this] { return line()->maximum() > 0 && line()->value() == line()->maximum() / 2; }));
    progress->add(100);
    EXPECT_TRUE(QTest::qWaitFor([this] { return line()->maximum() == 0; })) << "nobody knows how long the rest takes";
    window->showDocument();
    EXPECT_EQ(page(), nullptr);
}

TEST_F(EditorViewProgressTests, AWindowThatShowsItselfLateShowsThemAtOnce) {
    window = std::make_unique<EditorView>(std::make_shared<JSONDocument>(), nullptr, clock);
    window->noteOpeningStarted(progress);
    clock.advance(EditorModel::patience);
    window->show();
    EXPECT_NE(page()->cancelButton(), nullptr);
}

TEST_F(EditorViewProgressTests, ButtonAndEscapeCancelTheReading) {
    openWindow();
    clock.advance(EditorModel::patience);
    QSignalSpy cancelled(window.get(), &EditorView::openingCancelled);
    click(page()->cancelButton());
    EXPECT_EQ(cancelled.count(), 1);
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_EQ(cancelled.count(), 2);
}

TEST_F(EditorViewProgressTests, SavingThatTakesLongIsShownWithHowFarItIsAndCanBeCancelled) {
    showAsText("[1]");
    window->model().noteSavingStarted(progress);
    clock.advance(EditorModel::patience - oneMillisecond);
    EXPECT_FALSE(ring()->isVisible());
    progress->setTotal(100);
    progress->add(40);
    clock.advance(oneMillisecond);
    ASSERT_TRUE(QTest::qWaitFor([this] { return ring()->isVisible(); }));
    EXPECT_TRUE(says(QStringLiteral("Guardando…")));
    EXPECT_EQ(ring()->value(), 40);
    progress->add(30);
    EXPECT_TRUE(QTest::qWaitFor([this] { return ring()->value() == 70; }));

    QTest::keyClick(&textView(), Qt::Key_2);
    EXPECT_NE(savedText(), "[1]") << "typing goes on meanwhile";

    QSignalSpy cancelled(&window->model(), &EditorModel::savingCancelled);
    click(cancelButton());
    EXPECT_EQ(cancelled.count(), 1);
    QTest::keyClick(&textView(), Qt::Key_Escape);
    EXPECT_EQ(cancelled.count(), 2);

    window->model().noteSavingFinished();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !ring()->isVisible(); }));
    EXPECT_FALSE(says(QStringLiteral("Guardando…")));
}

TEST_F(EditorViewProgressTests, EscapeDoesNotCancelSavingThatNobodySees) {
    showAsText("[1]");
    QSignalSpy cancelled(&window->model(), &EditorModel::savingCancelled);
    window->model().noteSavingStarted(progress);
    QTest::keyClick(&textView(), Qt::Key_Escape);
    window->model().cancelWork();
    EXPECT_EQ(cancelled.count(), 0);
    window->model().noteSavingFinished();
    clock.advance(EditorModel::patience);
    EXPECT_FALSE(window->model().isWorkShown());
}

TEST_F(EditorViewProgressTests, SavingOnceMoreMeanwhileIsShownUntilBothHaveEnded) {
    showAsText("[1]");
    window->model().noteSavingStarted(progress);
    clock.advance(EditorModel::patience);
    const auto second = std::make_shared<WorkProgress>();
    window->model().noteSavingStarted(second);
    EXPECT_EQ(window->model().shownSaving(), second);
    window->model().noteSavingFinished();
    EXPECT_TRUE(window->model().isWorkShown());
    window->model().noteSavingFinished();
    EXPECT_FALSE(window->model().isWorkShown());
    EXPECT_EQ(window->model().shownSaving(), nullptr);
}

TEST_F(EditorViewProgressTests, TheTitleTellsTheFolderWhereItIsAskedTo) {
    show("[1]");
    window->document().configuration().setFileLocation(QStringLiteral("/tmp/x[*]\n.json"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("x[*][*]⏎.json[*]"));
    window->setTitleFolder(QStringLiteral("~/datos"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("x[*][*]⏎.json[*] (~/datos)"));
    window->setTitleFolder(QString());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("x[*][*]⏎.json[*]"));
}

} // namespace
} // namespace quelm
