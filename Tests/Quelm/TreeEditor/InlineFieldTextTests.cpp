#include "Tests/Quelm/TreeEditor/InlineFieldWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTest>

#include <gmock/gmock.h>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t tenMegabytes = 10'000'000;

std::string repeated(std::string_view piece, std::size_t bytes) {
    std::string result;
    while (result.size() < bytes)
        result += piece;
    return result;
}

/// Texts with all that a field could be tempted to mend.
std::vector<std::string> oddTexts() {
    using namespace std::string_literals;
    return {"",
            "a\nb\n",
            "a\r\nb\r\n",
            "a\rb\r",
            "\n",
            "\r\n\r\n",
            "a\u2028b\u2029c\u0085d",
            "\u00A0a\u202F\u2007 ",
            "\0a\0"s,
            "\uFEFFa\uFEFF",
            "  a \t ",
            "日本語 العربية עברית ไทย",
            "👨‍👩‍👧‍👦 e\u0301 \u0301",
            "\u200B\u200E\u202E\uFFFC\uFFFD\uFFFF",
            "\x01\x1B\x7F"};
}

class InlineFieldTextTests : public InlineFieldWindow {
protected:
    /// What is handed back of a text that was not touched.
    void expectSameTextBack(std::optional<NodeKind> kind, const std::string& bytes) {
        open(kind, {});
        delete field;
        const SharedText original(bytes);
        InlineField same(kind, original, below);
        std::optional<SharedText> result;
        same.onCommit = [&result](const SharedText& given) { result = given; };
        same.resize(same.sizeHint());
        same.show();
        same.grab();
        QTest::keyClick(&same.textView(), Qt::Key_Return);
        ASSERT_TRUE(result);
        EXPECT_TRUE(result->isSamePiece(original));
    }
};

TEST_F(InlineFieldTextTests, ATextThatWasNotTouchedIsTheSamePiece) {
    for (const std::string& each : oddTexts()) {
        expectSameTextBack(std::nullopt, each);
        expectSameTextBack(NodeKind::string, each);
    }
    expectSameTextBack(NodeKind::number, "1e5");
}

TEST_F(InlineFieldTextTests, WhatIsNotTouchedOfAnEditedTextStaysByteForByte) {
    for (const std::optional<NodeKind> kind : {std::optional<NodeKind>(), std::optional(NodeKind::string)})
        for (const std::string& each : oddTexts()) {
            open(kind, each);
            press(Qt::Key_End, Qt::ControlModifier);
            type(QStringLiteral("z"));
            painted();
            press(Qt::Key_Return);
            ASSERT_TRUE(committed);
            EXPECT_EQ(committed->view(), each + "z");
        }
}

TEST_F(InlineFieldTextTests, ATextThatIsRestoredByHandIsTheSameBytes) {
    for (const std::string& each : oddTexts()) {
        openString(each);
        press(Qt::Key_End, Qt::ControlModifier);
        type(QStringLiteral("z"));
        press(Qt::Key_Backspace);
        EXPECT_EQ(text(), each);
    }
}

TEST_F(InlineFieldTextTests, TenMegabytesOpenAndCommitUnchanged) {
    for (const std::string_view piece : {"Lorem ipsum dolor ", "Lorem ipsum dolor\n", "日本 العربية "}) {
        const std::string bytes = repeated(piece, tenMegabytes);
        expectSameTextBack(std::nullopt, bytes);
        expectSameTextBack(NodeKind::string, bytes);
    }
    expectSameTextBack(NodeKind::number, repeated("7", tenMegabytes));
}

TEST_F(InlineFieldTextTests, TenMegabytesAreEditedAtBothEnds) {
    for (const std::string_view piece : {"Lorem ipsum dolor ", "Lorem ipsum dolor\n"}) {
        const std::string bytes = repeated(piece, tenMegabytes);
        openString(bytes);
        EXPECT_TRUE(isScrollBarShown());
        press(Qt::Key_Home, Qt::ControlModifier);
        type(QStringLiteral("A"));
        press(Qt::Key_End, Qt::ControlModifier);
        type(QStringLiteral("Z"));
        painted();
        EXPECT_TRUE(view().viewport()->rect().contains(view().caretRectangle()));
        press(Qt::Key_Return);
        EXPECT_TRUE(committed->view() == "A" + bytes + "Z");
    }
}

TEST_F(InlineFieldTextTests, TenMegabytesArePastedIntoOneLine) {
    const std::string bytes = repeated("Lorem ipsum\n", tenMegabytes);
    QGuiApplication::clipboard()->setText(QString::fromStdString(bytes));
    openKey("clave");
    press(Qt::Key_V, Qt::ControlModifier);
    painted();
    std::string spaced = bytes;
    std::ranges::replace(spaced, '\n', ' ');
    EXPECT_TRUE(field->text().view() == spaced);
    EXPECT_EQ(field->heightForWidth(field->width()), field->height());
    openNumber("1");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_FALSE(field->isValid());
}

TEST_F(InlineFieldTextTests, LineFeedsPastedIntoOneLineAreSpaces) {
    QGuiApplication::clipboard()->setText(QStringLiteral("a\nb\r\nc"));
    openKey("clave");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text(), "a b c");
    openString("texto");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text(), "a\nb\r\nc");
}

TEST_F(InlineFieldTextTests, AKeyWithLineFeedsHasThemAndTakesMore) {
    openKey("a\nb");
    EXPECT_EQ(view().textLayout().rowCount(), 2);
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(text(), "a\nb\n");
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit a\nb\n"));
}

// Input methods.

TEST_F(InlineFieldTextTests, ReturnAndEscapeBelongToTheInputMethodWhileItComposes) {
    openString("");
    compose(QStringLiteral("にほ"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(view().isComposing());
    EXPECT_THAT(calls, IsEmpty());
    press(Qt::Key_Return);
    EXPECT_FALSE(view().isComposing());
    EXPECT_EQ(text(), "にほ");
    EXPECT_THAT(calls, IsEmpty());
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit にほ"));
}

TEST_F(InlineFieldTextTests, EndingOtherwiseCommitsWhatIsComposed) {
    openString("ab");
    press(Qt::Key_End);
    compose(QStringLiteral("に"));
    QTest::mouseClick(other, Qt::LeftButton);
    EXPECT_THAT(calls, ElementsAre("commit abに"));
    openKey("ab");
    field->onTab = [this] { calls.emplace_back("tab"); };
    press(Qt::Key_End);
    compose(QStringLiteral("に"));
    press(Qt::Key_Tab);
    EXPECT_THAT(calls, ElementsAre("commit abに", "tab"));
    openKey("ab");
    press(Qt::Key_End);
    compose(QStringLiteral("に"));
    field->finish();
    EXPECT_THAT(calls, ElementsAre("commit abに"));
}

TEST_F(InlineFieldTextTests, AComposedTextMayMakeANumberInvalid) {
    openNumber("12");
    press(Qt::Key_End);
    compose(QStringLiteral("に"));
    EXPECT_TRUE(field->isValid());
    field->finish();
    EXPECT_THAT(calls, ElementsAre("cancel"));
}

TEST_F(InlineFieldTextTests, AGrowingCompositionMakesRoom) {
    openKey("ab");
    const int width = field->width();
    press(Qt::Key_End);
    compose(QString(60, u'に'));
    QCoreApplication::processEvents();
    EXPECT_GT(field->width(), width);
    compose(QString());
    QCoreApplication::processEvents();
    EXPECT_EQ(field->width(), width);
}

} // namespace
} // namespace quelm
