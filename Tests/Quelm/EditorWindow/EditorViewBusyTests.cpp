#include "Quelm/Foundation/BackgroundThreads.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QClipboard>
#include <QGuiApplication>

#include <functional>
#include <optional>

namespace quelm {
namespace {

/// A window whose operation does not end before it is let.
class EditorViewBusyTests : public EditorViewTest {
protected:
    void begin(const std::function<void()>& operation) {
        blocked.emplace();
        operation();
        ASSERT_TRUE(window->model().isBusy());
    }
    bool end() {
        blocked.reset();
        return finishOperation();
    }

    std::optional<BlockedThreads> blocked;
};

TEST_F(EditorViewBusyTests, TheToolbarCannotBeUsedMeanwhile) {
    showAsText("[1, 2]");
    begin([this] { click(button(QStringLiteral("Compactar"))); });
    EXPECT_FALSE(window->modePicker().isEnabled());
    for (const QString& title : {QStringLiteral("Embellecer"), QStringLiteral("Compactar"), QStringLiteral("Exportar")})
        EXPECT_FALSE(button(title)->isEnabled());
    click(segment(QStringLiteral("Árbol")));
    click(button(QStringLiteral("Embellecer")));

    ASSERT_TRUE(end());
    EXPECT_EQ(shownText(), QStringLiteral("[1,2]"));
    EXPECT_NE(text(), nullptr);
    EXPECT_TRUE(window->modePicker().isEnabled());
    EXPECT_TRUE(button(QStringLiteral("Embellecer"))->isEnabled());
}

TEST_F(EditorViewBusyTests, TypingDoesNothingWhileSelectingAndCopyingGoOn) {
    showAsText("[1, 2]");
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    begin([this] { click(button(QStringLiteral("Compactar"))); });
    QTest::keyClicks(&textView(), QStringLiteral("xyz"));
    QTest::keyClick(&textView(), Qt::Key_Delete);
    QTest::keyClick(&textView(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&textView(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shownText(), QStringLiteral(" [1, 2]"));
    QTest::keyClick(&textView(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&textView(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral(" [1, 2]"));

    ASSERT_TRUE(end());
    EXPECT_EQ(shownText(), QStringLiteral("[1,2]"));
    QTest::keyClick(&textView(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    EXPECT_EQ(shownText(), QStringLiteral("[1,2] "));
    QTest::keyClick(&textView(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&textView(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shownText(), QStringLiteral(" [1, 2]"));
}

TEST_F(EditorViewBusyTests, TheTreeCanBeReadButNotEdited) {
    show("[1,[2]]");
    activate();
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    begin([this] { click(segment(QStringLiteral("Texto"))); });
    QTest::keyClick(tree(), Qt::Key_Delete);
    QTest::keyClick(tree(), Qt::Key_Return);
    EXPECT_EQ(tree()->inlineField(), nullptr);
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 3);
    QTest::keyClick(tree(), Qt::Key_Down);
    EXPECT_EQ(window->treeEditor().selection(), window->treeEditor().outline().rowID(2));
    QTest::keyClick(tree(), Qt::Key_Right);
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 4);

    ASSERT_TRUE(end());
    EXPECT_EQ(shownText(), QStringLiteral("[1,[2]]"));
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    EXPECT_EQ(shownText(), QStringLiteral(" [1,[2]]"));
    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    QTest::keyClick(tree(), Qt::Key_Delete);
    EXPECT_EQ(savedText(), "[[2]]");
}

TEST_F(EditorViewBusyTests, AFileThatIsReadAnewMeanwhileEndsTheOperation) {
    showAsText("[1, 2]");
    begin([this] { click(button(QStringLiteral("Compactar"))); });
    replace("[3, 4]");
    EXPECT_FALSE(window->model().isBusy());
    EXPECT_TRUE(window->modePicker().isEnabled());
    blocked.reset();
    backgroundThreads().waitForDone();
    QTest::qWait(0);
    EXPECT_EQ(shownText(), QStringLiteral("[3, 4]"));
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    EXPECT_EQ(shownText(), QStringLiteral(" [3, 4]"));
}

TEST_F(EditorViewBusyTests, AWindowCanCloseInTheMiddleOfAnything) {
    const std::vector<std::function<void()>> operations{
        [this] { click(segment(QStringLiteral("Árbol"))); },
        [this] { click(button(QStringLiteral("Embellecer"))); },
        [this] { click(button(QStringLiteral("Compactar"))); },
    };
    for (const auto& operation : operations) {
        showAsText("[1, 2]");
        begin(operation);
        window->close();
        window.reset();
        blocked.reset();
        backgroundThreads().waitForDone();
        QTest::qWait(0);
    }
    SUCCEED();
}

} // namespace
} // namespace quelm
