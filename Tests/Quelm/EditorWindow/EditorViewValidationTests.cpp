#include "Quelm/TextEditor/FindBar.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QLineEdit>
#include <QSignalSpy>

#include <optional>

// A window while its text is validated, or searched, on another thread.

namespace quelm {
namespace {

using State = TextValidator::State;

class EditorViewValidationTests : public EditorViewTest {
protected:
    TextValidator& validator() const { return window->model().validator(); }

    /// Types a text whose validation is begun, and does not end before it is let.
    void typeUntilValidating(const QString& typed) {
        textView().setSelectedRange({2, 0});
        QTest::keyClicks(&textView(), typed);
        blocked.emplace();
        clock.advance(TextValidator::typingPause);
        ASSERT_TRUE(validator().isPending());
    }
    bool finishValidation() {
        blocked.reset();
        return QTest::qWaitFor([this] { return !validator().isPending(); });
    }
    void close() {
        window->close();
        window.reset();
    }

    std::optional<BlockedThreads> blocked;
};

TEST_F(EditorViewValidationTests, TypingGoesOnAndOnlyTheLastTextCounts) {
    showAsText("[1]");
    ASSERT_EQ(validator().state(), State::valid(2));
    QSignalSpy published(&validator(), &TextValidator::stateChanged);
    typeUntilValidating(QStringLiteral(","));
    EXPECT_FALSE(window->model().isBusy());
    EXPECT_FALSE(textView().isReadOnly());
    EXPECT_TRUE(window->modePicker().isEnabled());

    QTest::keyClicks(&textView(), QStringLiteral("2,"));
    EXPECT_EQ(shownText(), QStringLiteral("[1,2,]"));
    clock.advance(TextValidator::typingPause);
    QTest::keyClicks(&textView(), QStringLiteral("3"));
    QTest::keyClick(&textView(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&textView(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(shownText(), QStringLiteral("[1,2,3]"));
    clock.advance(TextValidator::typingPause);
    EXPECT_EQ(validator().state(), State::valid(2));

    ASSERT_TRUE(finishValidation());
    EXPECT_EQ(validator().state(), State::valid(4));
    EXPECT_EQ(published.count(), 1);
    EXPECT_EQ(savedText(), "[1,2,3]");
}

TEST_F(EditorViewValidationTests, WhatWasValidatedIsNotPublishedOnceMoreWasTyped) {
    showAsText("[1]");
    typeUntilValidating(QStringLiteral(","));
    QTest::keyClicks(&textView(), QStringLiteral("2"));
    blocked.reset();
    backgroundThreads().waitForDone();
    QTest::qWait(0);
    EXPECT_EQ(validator().state(), State::valid(2));
    clock.advance(TextValidator::typingPause);
    ASSERT_TRUE(finishValidation());
    EXPECT_EQ(validator().state(), State::valid(3));
}

TEST_F(EditorViewValidationTests, AWindowCanCloseInTheMiddleOfAValidation) {
    showAsText("[1]");
    typeUntilValidating(QStringLiteral(","));
    close();
    blocked.reset();
    backgroundThreads().waitForDone();
    QTest::qWait(0);
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(EditorViewValidationTests, AWindowCanCloseWhileAValidationWaitsForAPause) {
    showAsText("[1]");
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    ASSERT_TRUE(validator().isPending());
    close();
    clock.advance(TextValidator::typingPause);
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(EditorViewValidationTests, AWindowCanCloseInTheMiddleOfASearch) {
    // Too long to be searched at once.
    std::string lines = "[\n";
    while (lines.size() < std::size_t{8} * TextSearch::longestImmediate)
        lines += "\"unas palabras entre las que no se encuentra nada\",\n";
    showAsText(lines + "0]\n");
    FindBar& bar = text()->findBar();
    bar.openFind();
    QTest::keyClicks(bar.findChild<QLineEdit*>(), QStringLiteral("xyz"));
    ASSERT_TRUE(bar.search().isFinding());
    ASSERT_EQ(bar.search().count(), std::nullopt);
    close();
    QTest::qWait(0);
    SUCCEED();
}

} // namespace
} // namespace quelm
