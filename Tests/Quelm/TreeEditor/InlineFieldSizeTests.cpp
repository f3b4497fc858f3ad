#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"
#include "Tests/Quelm/TreeEditor/InlineFieldWindow.h"

#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

namespace quelm {
namespace {

std::string lines(int count) {
    std::string result;
    for (int line = 1; line < count; ++line)
        result += "línea\n";
    return result + "última";
}

class InlineFieldSizeTests : public InlineFieldWindow {
protected:
    int rowHeight() const { return view().textLayout().font().rowHeight(); }
    int heightOfRows(int rows) const { return 2 * field->textOrigin().y() + rows * rowHeight(); }
    int rows() const { return (field->height() - 2 * field->textOrigin().y()) / rowHeight(); }
    bool isAllVisible() const { return view().verticalAxis().maximum() == 0 && view().horizontalAxis().maximum() == 0; }
};

TEST_F(InlineFieldSizeTests, OneLineIsNoHigherThanARowOfTheTree) {
    for (const std::optional<NodeKind> kind :
         {std::optional<NodeKind>(), std::optional(NodeKind::string), std::optional(NodeKind::number)}) {
        open(kind, "1");
        EXPECT_LE(field->height(), TreeRowStyle(field->palette()).rowHeight);
        EXPECT_EQ(rows(), 1);
    }
}

TEST_F(InlineFieldSizeTests, TheTextBeginsAtItsOrigin) {
    openKey("clave");
    const QRect caret = view().caretRectangleAt(0);
    EXPECT_EQ(view().viewport()->mapTo(field.data(), caret.topLeft()), field->textOrigin());
}

TEST_F(InlineFieldSizeTests, IsAsWideAsTheTextNeedsBetweenBounds) {
    openKey("");
    EXPECT_EQ(field->width(), scaledPixels(120));
    openKey(std::string(30, 'a'));
    EXPECT_GT(field->width(), scaledPixels(120));
    EXPECT_LT(field->width(), scaledPixels(520));
    EXPECT_TRUE(isAllVisible());
    openKey(std::string(500, 'a'));
    EXPECT_EQ(field->width(), scaledPixels(520));
    EXPECT_EQ(rows(), 1);
    EXPECT_FALSE(isScrollBarShown());
}

TEST_F(InlineFieldSizeTests, AStringStaysInOneRowAsLongAsItFits) {
    openString("");
    press(Qt::Key_End);
    while (rows() == 1 && field->width() < scaledPixels(520)) {
        EXPECT_TRUE(isAllVisible());
        type(QStringLiteral("a"));
    }
    EXPECT_EQ(field->width(), scaledPixels(520));
    type(QStringLiteral("aaaaaaaaaa"));
    EXPECT_EQ(rows(), 2);
    EXPECT_TRUE(isAllVisible());
}

TEST_F(InlineFieldSizeTests, GrowsToEightRowsAndThenScrollsAndBack) {
    openString("1");
    press(Qt::Key_End);
    for (int count = 2; count <= 12; ++count) {
        press(Qt::Key_Return, Qt::ShiftModifier);
        type(QString::number(count));
        EXPECT_EQ(rows(), std::min(count, InlineField::mostLines));
        EXPECT_EQ(isScrollBarShown(), count > InlineField::mostLines);
        EXPECT_EQ(isAllVisible(), count <= InlineField::mostLines);
        EXPECT_TRUE(view().viewport()->rect().contains(view().caretRectangle()));
    }
    while (!text().empty()) {
        press(Qt::Key_Backspace);
        const int count = static_cast<int>(view().textStorage().lineCount());
        EXPECT_EQ(rows(), std::min(count, InlineField::mostLines));
        EXPECT_EQ(isScrollBarShown(), count > InlineField::mostLines);
    }
}

TEST_F(InlineFieldSizeTests, WrappedRowsCountAsRows) {
    std::string words;
    for (int word = 0; word < 40; ++word)
        words += "palabra" + std::to_string(word) + " ";
    openString(words);
    EXPECT_EQ(field->width(), scaledPixels(520));
    EXPECT_EQ(rows(), view().textLayout().rowCount());
    EXPECT_GT(rows(), 2);
    EXPECT_TRUE(isAllVisible());
}

TEST_F(InlineFieldSizeTests, TheHeightFollowsTheWidthGiven) {
    openString(std::string(60, 'a'));
    EXPECT_EQ(rows(), 1);
    int height = field->heightForWidth(scaledPixels(520));
    for (int width = scaledPixels(520); width > scaledPixels(60); width -= 7) {
        EXPECT_GE(field->heightForWidth(width), height);
        height = field->heightForWidth(width);
        field->resize(width, height);
        EXPECT_EQ(rows(), std::min<qint64>(view().textLayout().rowCount(), InlineField::mostLines));
        EXPECT_EQ(isScrollBarShown(), view().textLayout().rowCount() > InlineField::mostLines);
    }
}

TEST_F(InlineFieldSizeTests, SaysThatItWantsMoreHeightAtTheWidthItWasGiven) {
    mostWidth = scaledPixels(70);
    openString("a");
    press(Qt::Key_End);
    const QSize hint = field->sizeHint();
    type(QString(9, u'a'));
    EXPECT_EQ(field->sizeHint(), hint);
    EXPECT_EQ(field->width(), mostWidth);
    EXPECT_EQ(rows(), 2);
    EXPECT_TRUE(isAllVisible());
}

TEST_F(InlineFieldSizeTests, IsSilentWhileItsSizeIsAsItShouldBe) {
    openKey("a");
    press(Qt::Key_End);
    type(QStringLiteral("bcd"));
    EXPECT_EQ(sizeChanges, 0);
    type(QString(30, u'e'));
    EXPECT_GT(sizeChanges, 0);
}

TEST_F(InlineFieldSizeTests, AKeyShowsItsLinesAndDoesNotWrap) {
    openKey(lines(3));
    EXPECT_EQ(rows(), 3);
    EXPECT_TRUE(isAllVisible());
    openKey(lines(12));
    EXPECT_EQ(rows(), InlineField::mostLines);
    EXPECT_TRUE(isScrollBarShown());
    openKey(std::string(300, 'a') + "\nb");
    EXPECT_EQ(rows(), 2);
    EXPECT_FALSE(isScrollBarShown());
}

TEST_F(InlineFieldSizeTests, ALongTextWantsAllItCanGet) {
    openString(std::string(100'000, 'a'));
    EXPECT_EQ(field->sizeHint(), QSize(scaledPixels(520), heightOfRows(InlineField::mostLines)));
    EXPECT_TRUE(isScrollBarShown());
}

TEST_F(InlineFieldSizeTests, ShowsTheStartOfALongTextAtFirst) {
    for (const std::optional<NodeKind> kind : {std::optional<NodeKind>(), std::optional(NodeKind::string)}) {
        open(kind, std::string(100'000, 'a'));
        painted();
        EXPECT_EQ(view().verticalAxis().position(), 0);
        EXPECT_EQ(view().horizontalAxis().position(), 0);
    }
}

TEST_F(InlineFieldSizeTests, TheWheelScrollsAFieldWithMoreThanItShows) {
    openString(lines(20));
    turnWheel(1);
    EXPECT_GT(view().verticalAxis().position(), 0);
    for (int turn = 0; turn < 30; ++turn)
        turnWheel(1);
    EXPECT_EQ(view().verticalAxis().position(), view().verticalAxis().maximum());
    EXPECT_EQ(below->events, 0);
}

TEST_F(InlineFieldSizeTests, NeitherKeysNorTheWheelZoom) {
    openString("hola");
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(view().zoom(), 1);
    turnWheel(-1, Qt::ControlModifier);
    EXPECT_EQ(view().zoom(), 1);
}

} // namespace
} // namespace quelm
