#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

// The keys of the window itself, for whatever does not use them.

namespace quelm {
namespace {

class EditorViewKeyTests : public EditorViewTest {};

TEST_F(EditorViewKeyTests, EscapeInTheTextCancelsWhatIsUnderWay) {
    showAsText("[1, 2]");
    const BlockedThreads blocked;
    click(button(QStringLiteral("Compactar")));
    ASSERT_TRUE(window->model().isBusy());
    textView().setFocus();
    QTest::keyClick(&textView(), Qt::Key_Escape);
    EXPECT_TRUE(finishOperation());
    EXPECT_EQ(shownText(), QStringLiteral("[1, 2]"));
    EXPECT_FALSE(textView().isReadOnly());
}

TEST_F(EditorViewKeyTests, EscapeInTheTreeCancelsWhatIsUnderWay) {
    show("[1, 2]");
    activate();
    const BlockedThreads blocked;
    click(segment(QStringLiteral("Texto")));
    ASSERT_TRUE(window->model().isBusy());
    tree()->setFocus();
    QTest::keyClick(tree(), Qt::Key_Escape);
    EXPECT_TRUE(finishOperation());
    EXPECT_NE(tree(), nullptr);
    EXPECT_FALSE(window->model().errorMessage());
}

TEST_F(EditorViewKeyTests, F6GoesToTheToolbarAndBack) {
    showAsText("[1]");
    textView().setFocus();
    QTest::keyClick(&textView(), Qt::Key_F6);
    EXPECT_TRUE(segment(QStringLiteral("Texto"))->hasFocus());
    QTest::keyClick(window->focusWidget(), Qt::Key_F6);
    EXPECT_TRUE(textView().hasFocus());
    EXPECT_EQ(shownText(), QStringLiteral("[1]"));
}

TEST_F(EditorViewKeyTests, ACaretThatStoodPastTheEndOfAFormattedTextIsAtItsBeginning) {
    showAsText("[\n\n\n\n1,\n2\n]");
    textView().setSelectedRange({textView().textStorage().length(), 0});
    click(button(QStringLiteral("Compactar")));
    ASSERT_TRUE(finishOperation());
    EXPECT_EQ(shownText(), QStringLiteral("[1,2]"));
    EXPECT_EQ(textView().selectedRange(), (TextRange{0, 0}));
}

TEST_F(EditorViewKeyTests, ALineThatWasAskedForWhileTheTreeCameIsNotGoneToLater) {
    showAsText("[\n1,\n2]");
    {
        const BlockedThreads blocked;
        click(segment(QStringLiteral("Árbol")));
        window->model().setGoToLinePresented(true);
    }
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(tree(), nullptr);
    EXPECT_FALSE(window->model().isGoToLinePresented());
    window->model().setGoTo(TextLocation(2, 1));
    window->model().switchMode(EditorMode::text);
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(text(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(textView().selectedRange(), (TextRange{0, 0}));
}

} // namespace
} // namespace quelm
