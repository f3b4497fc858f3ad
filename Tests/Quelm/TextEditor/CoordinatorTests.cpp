#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/Coordinator.h"
#include "Quelm/TextEditor/LineNumberGutter.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QHBoxLayout>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace quelm {
namespace {

constexpr int patience = 20'000; // milliseconds

std::string repeated(std::string_view unit, std::size_t times) {
    std::string text;
    for (std::size_t time = 0; time < times; ++time)
        text += unit;
    return text;
}

/// Too long to go far into on the main thread: of so many characters, each one
/// unit.
constexpr qint64 longLine = 1'000'000;
std::string longText() {
    return "[\n" + repeated("ñ", longLine) + "\n]";
}

class CoordinatorTest : public testing::Test {
protected:
    ~CoordinatorTest() override { window_.reset(); }

    void open(std::string_view text) {
        window_ = std::make_unique<QWidget>();
        view_ = new TextView(std::make_shared<TextStorage>(TextRope(SharedText(text))));
        view_->setUndoManager(&undoManager_);
        auto* gutter = new LineNumberGutter(*view_);
        coordinator_ = new Coordinator([this] { ++changes_; }, window_.get());
        coordinator_->attach(*view_, *gutter);
        auto* layout = new QHBoxLayout(window_.get());
        layout->addWidget(gutter);
        layout->addWidget(view_, 1);
        window_->resize(400, 200);
        window_->show();
        window_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        QTest::qWait(0);
    }

    TextStorage& storage() const { return view_->textStorage(); }
    qint64 caret() const { return view_->editing().selection().caret; }
    bool waitUntilLocated() const {
        return QTest::qWaitFor([this] { return !coordinator_->isLocating(); }, patience);
    }
    /// Lets what is still looked for in vain end, and be delivered if it should
    /// not.
    static void settle() {
        backgroundThreads().waitForDone();
        QTest::qWait(1);
    }

    UndoManager undoManager_;
    std::unique_ptr<QWidget> window_;
    TextView* view_ = nullptr;
    Coordinator* coordinator_ = nullptr;
    int changes_ = 0;
};

// Short lines.

TEST_F(CoordinatorTest, GoesToAPlaceAtOnce) {
    open("[\n  \"ñandú\"\n]");
    coordinator_->goTo(TextLocation(2, 5));
    EXPECT_EQ(view_->selectedRange(), (TextRange{6, 0}));
    EXPECT_TRUE(view_->hasFocus());
    EXPECT_TRUE(view_->isShowingFindIndicator());
    EXPECT_FALSE(coordinator_->isLocating());
}

TEST_F(CoordinatorTest, TheSameRequestMovesTheCaretOnceAndAnotherOfTheSamePlaceAgain) {
    open("a\nbb\ncc");
    const TextLocation location(3, 1);
    coordinator_->goTo(location);
    EXPECT_EQ(caret(), 5);
    view_->setSelectedRange({1, 0});
    coordinator_->goTo(location);
    EXPECT_EQ(caret(), 1);
    coordinator_->goTo(std::nullopt);
    EXPECT_EQ(caret(), 1);
    coordinator_->goTo(TextLocation(3, 1));
    EXPECT_EQ(caret(), 5);
}

TEST_F(CoordinatorTest, TellsOfChangesThatTheUserMadeOnly) {
    open("[]");
    view_->setFocus();
    QTest::keyClick(view_, Qt::Key_1);
    EXPECT_EQ(changes_, 1);
    storage().replaceCharacters({0, 0}, u"x");
    EXPECT_EQ(changes_, 1);
}

// Long lines.

TEST_F(CoordinatorTest, ALongLineOfASCIIIsGoneIntoAtOnce) {
    open(std::string(3 << 20, 'a') + "\r\n]");
    coordinator_->goTo(TextLocation(1, (2 << 20) + 1));
    EXPECT_FALSE(coordinator_->isLocating());
    EXPECT_EQ(caret(), 2 << 20);
}

TEST_F(CoordinatorTest, TheStartOfALongLineIsGoneToAtOnce) {
    open(longText());
    coordinator_->goTo(TextLocation(2, 1));
    EXPECT_FALSE(coordinator_->isLocating());
    EXPECT_EQ(caret(), 2);
}

TEST_F(CoordinatorTest, APlaceFarIntoALongLineIsLocatedWithoutHoldingUpTheEvents) {
    open(longText());
    const TextLocation location(2, longLine - 5);
    coordinator_->goTo(location);
    EXPECT_EQ(coordinator_->lastGoTo(), location);
    EXPECT_TRUE(view_->hasFocus());
    EXPECT_TRUE(coordinator_->isLocating());
    EXPECT_EQ(caret(), 0);
    coordinator_->goTo(location);
    ASSERT_TRUE(waitUntilLocated());
    EXPECT_EQ(caret(), 2 + longLine - 6);
    EXPECT_TRUE(view_->isShowingFindIndicator());
    EXPECT_TRUE(view_->viewport()->rect().intersects(view_->caretRectangle()));
}

TEST_F(CoordinatorTest, ALaterRequestReplacesTheOneThatIsBeingLocated) {
    open(longText());
    coordinator_->goTo(TextLocation(2, longLine));
    coordinator_->goTo(TextLocation(3, 1));
    EXPECT_FALSE(coordinator_->isLocating());
    const qint64 lastLine = storage().lineStart(2);
    settle();
    EXPECT_EQ(caret(), lastLine);
    coordinator_->goTo(TextLocation(2, longLine));
    coordinator_->goTo(TextLocation(2, 1'001));
    ASSERT_TRUE(waitUntilLocated());
    settle();
    EXPECT_EQ(caret(), 2 + 1'000);
}

TEST_F(CoordinatorTest, WhoeverTypesOrMovesTheCaretStaysThere) {
    open(longText());
    coordinator_->goTo(TextLocation(2, longLine));
    QTest::keyClick(view_, Qt::Key_1);
    EXPECT_FALSE(coordinator_->isLocating());
    settle();
    EXPECT_EQ(caret(), 1);
    coordinator_->goTo(TextLocation(2, longLine));
    QTest::keyClick(view_, Qt::Key_Delete);
    EXPECT_FALSE(coordinator_->isLocating());
    settle();
    EXPECT_EQ(caret(), 1);
    coordinator_->goTo(TextLocation(2, longLine));
    QTest::keyClick(view_, Qt::Key_Left);
    EXPECT_FALSE(coordinator_->isLocating());
    settle();
    EXPECT_EQ(caret(), 0);
}

TEST_F(CoordinatorTest, AnEditMadeElsewhereIsLocatedIn) {
    open(longText());
    view_->setSelectedRange({1, 0});
    coordinator_->goTo(TextLocation(2, longLine));
    storage().replaceCharacters({0, 0}, u"{ }, ");
    EXPECT_EQ(caret(), 6);
    ASSERT_TRUE(waitUntilLocated());
    EXPECT_EQ(caret(), 7 + longLine - 1);
}

TEST_F(CoordinatorTest, TheViewMayGoWhileAPlaceIsBeingLocated) {
    open(longText());
    coordinator_->goTo(TextLocation(2, longLine));
    delete view_;
    settle();
    EXPECT_FALSE(coordinator_->isLocating());
    open(longText());
    coordinator_->goTo(TextLocation(2, longLine));
    window_.reset();
    settle();
}

using CoordinatorDeathTest = CoordinatorTest;

TEST_F(CoordinatorDeathTest, AnotherThreadIsAProgrammingError) {
    open("[]");
    const auto elsewhere = [this] { coordinator_->goTo(TextLocation(1, 1)); };
    EXPECT_DEATH(std::thread(elsewhere).join(), "a coordinator is used on the main thread only");
}

} // namespace
} // namespace quelm
