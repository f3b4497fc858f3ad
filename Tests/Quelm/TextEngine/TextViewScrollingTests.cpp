#include "Tests/Quelm/TextEngine/TextViewWindow.h"
#include "TextCore/SharedText.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace quelm {
namespace {

class TextViewScrollingTests : public TextViewWindow {
protected:
    static QString numberedLines(int count) {
        QString lines;
        for (int line = 0; line < count; ++line)
            lines += QString::number(line) + u'\n';
        return lines;
    }
    static TextRope lineOf(std::size_t length) {
        TextBuilder builder(length);
        std::fill_n(builder.room(length), length, 'x');
        builder.advance(length);
        return TextRope(builder.finish());
    }
    std::int64_t rowHeight() const { return view->textLayout().font().rowHeight(); }
};

TEST_F(TextViewScrollingTests, TheExtentIsThatOfTheRowsAndTheInset) {
    open(numberedLines(99));
    view->setTextContainerInset({6, 8});
    EXPECT_EQ(view->verticalAxis().maximum(), 100 * rowHeight() + 16 - view->viewport()->height());
    EXPECT_EQ(view->horizontalAxis().maximum(), 0);
    EXPECT_EQ(view->caretRectangle().topLeft(), QPoint(6, 8));
}

TEST_F(TextViewScrollingTests, TheWidthIsThatOfTheWidestRowSeenSoFar) {
    open(numberedLines(200) + QString(300, u'x'));
    EXPECT_EQ(view->horizontalAxis().maximum(), 0);
    press(Qt::Key_End, Qt::ControlModifier);
    const std::int64_t widest = view->horizontalAxis().maximum();
    EXPECT_GT(widest, 0);
    press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(view->horizontalAxis().maximum(), widest) << "it stays";
    view->textStorage().replaceCharacters({0, view->textStorage().length()}, QStringLiteral("short"));
    QTest::qWait(0);
    EXPECT_EQ(view->horizontalAxis().maximum(), 0) << "until it is another text";
}

TEST_F(TextViewScrollingTests, TypingBeyondTheEdgeScrollsAlong) {
    type(QString(200, u'x'));
    EXPECT_TRUE(isCaretVisible());
    EXPECT_GT(view->horizontalAxis().position(), 0);
    press(Qt::Key_Return);
    EXPECT_EQ(view->horizontalAxis().position(), 0);
}

TEST_F(TextViewScrollingTests, AScrollBarThatComesUpDoesNotCoverTheCaret) {
    const auto rows = static_cast<int>(view->viewport()->height() / rowHeight());
    open(QString(rows - 1, u'\n'));
    press(Qt::Key_End, Qt::ControlModifier);
    ASSERT_TRUE(isCaretVisible());
    ASSERT_FALSE(view->horizontalScrollBar()->isVisible());
    type(QString(200, u'x'));
    EXPECT_TRUE(QTest::qWaitFor([this] { return view->horizontalScrollBar()->isVisible(); }));
    EXPECT_TRUE(isCaretVisible());
}

TEST_F(TextViewScrollingTests, TheWheelScrolls) {
    open(numberedLines(400));
    turnWheel({0, -120});
    EXPECT_EQ(view->verticalAxis().position(), QApplication::wheelScrollLines() * rowHeight());
    turnWheel({0, 120});
    EXPECT_EQ(view->verticalAxis().position(), 0);
    turnWheel({0, -120}, {}, {0, -7});
    EXPECT_EQ(view->verticalAxis().position(), 7) << "a touchpad counts pixels";
}

TEST_F(TextViewScrollingTests, TheWheelScrollsSidewaysWithShift) {
    open(QString(1000, u'x'));
    turnWheel({0, -120}, Qt::ShiftModifier);
    EXPECT_EQ(view->horizontalAxis().position(), QApplication::wheelScrollLines() * rowHeight());
    EXPECT_EQ(view->verticalAxis().position(), 0);
}

TEST_F(TextViewScrollingTests, VisibleRowsFollowTheScrolling) {
    open(numberedLines(400));
    QSignalSpy moves(view, &TextView::visibleAreaDidChange);
    view->verticalAxis().setPosition(10 * rowHeight() + 3);
    EXPECT_EQ(moves.count(), 1);
    const auto rows = view->visibleRows();
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().line, 10);
    EXPECT_EQ(rows.front().top, -3);
    EXPECT_EQ(rows.front().height, rowHeight());
    EXPECT_TRUE(rows.front().beginsLine);
    EXPECT_EQ(rows[1].top, rowHeight() - 3);
    EXPECT_GE(rows.back().top + rowHeight(), view->viewport()->height());
    const TextRange visible = view->visibleRange();
    EXPECT_EQ(visible.location, view->textStorage().lineStart(10));
    EXPECT_EQ(visible.end(), view->textStorage().lineContents(rows.back().line).end());
}

TEST_F(TextViewScrollingTests, AStretchIsShownWholeWhereItFits) {
    open(numberedLines(400));
    const TextStorage& storage = view->textStorage();
    const TextRange lines = TextRange::between(storage.lineStart(100), storage.lineStart(105));
    view->scrollRangeToVisible(lines);
    EXPECT_TRUE(view->viewport()->rect().contains(view->caretRectangleAt(lines.location)));
    EXPECT_TRUE(view->viewport()->rect().contains(view->caretRectangleAt(lines.end())));
    const std::int64_t position = view->verticalAxis().position();
    view->scrollRangeToVisible({storage.lineStart(101), 0});
    EXPECT_EQ(view->verticalAxis().position(), position) << "what is visible needs no scrolling";
}

TEST_F(TextViewScrollingTests, OfAStretchThatDoesNotFitTheCaretsEndIsShown) {
    open(numberedLines(400));
    view->editing().setSelection({1000, 10});
    view->scrollRangeToVisible(view->selectedRange());
    EXPECT_TRUE(isCaretVisible());
    view->scrollRangeToVisible({0, 1400});
    EXPECT_TRUE(view->viewport()->rect().contains(view->caretRectangleAt(1400)));
}

TEST_F(TextViewScrollingTests, WhatIsAtTheTopStaysThereWhenOthersEditAboveIt) {
    open(numberedLines(400));
    view->verticalAxis().setPosition(100 * rowHeight() + 5);
    view->textStorage().replaceCharacters({0, 0}, QStringLiteral("new\nlines\n"));
    EXPECT_EQ(view->verticalAxis().position(), 102 * rowHeight() + 5);
    view->textStorage().replaceCharacters({0, 10}, QStringLiteral(""));
    EXPECT_EQ(view->verticalAxis().position(), 100 * rowHeight() + 5);
}

TEST_F(TextViewScrollingTests, ATextThatBecomesAnotherIsShownAtTheSamePlaceAsFarAsItHasThat) {
    QString lines;
    for (int line = 0; line < 200; ++line)
        lines += QString(3000, u'x') + u'\n';
    open(lines);
    view->editing().setSelection(TextSelection::at(view->textStorage().lineStart(150) + 2000));
    view->scrollRangeToVisible(view->selectedRange());
    const QPoint place(static_cast<int>(view->horizontalAxis().position()),
                       static_cast<int>(view->verticalAxis().position()));
    const QRect caret = view->caretRectangle();
    ASSERT_GT(place.x(), 0);
    ASSERT_GT(place.y(), 0);
    const auto replaceBy = [this](const QString& text) {
        view->textStorage().replaceCharacters({0, view->textStorage().length()}, text);
        QTest::qWait(0);
    };

    replaceBy(QString(lines).replace(u'x', u'y'));
    EXPECT_EQ(view->horizontalAxis().position(), place.x());
    EXPECT_EQ(view->verticalAxis().position(), place.y());
    EXPECT_EQ(view->caretRectangle(), caret);

    replaceBy(QString(200, u'\n'));
    EXPECT_EQ(view->horizontalAxis().position(), 0);
    EXPECT_EQ(view->horizontalAxis().maximum(), 0);
    EXPECT_EQ(view->verticalAxis().position(), place.y());
    EXPECT_EQ(view->textStorage().lineAt(view->selectedRange().location), 150);
}

TEST_F(TextViewScrollingTests, OfALongStretchThatIsUndoneTheStartIsShown) {
    open(numberedLines(400));
    const TextStorage& storage = view->textStorage();
    const TextRange changed = TextRange::between(storage.lineStart(100), storage.lineStart(300));
    view->editing().replace(changed, TextRope(SharedText("one line\n")), QStringLiteral("Reemplazar"));
    view->verticalAxis().setPosition(0);
    view->undo();
    EXPECT_EQ(view->selectedRange(), changed);
    EXPECT_TRUE(view->viewport()->rect().contains(view->caretRectangleAt(changed.location)));

    press(Qt::Key_Home, Qt::ControlModifier);
    view->redo();
    EXPECT_TRUE(isCaretVisible());
    EXPECT_TRUE(view->viewport()->rect().contains(view->caretRectangleAt(changed.location)));
}

TEST_F(TextViewScrollingTests, OfAShortStretchThatIsUndoneTheEndIsShownToo) {
    open(numberedLines(400));
    const TextRange changed{view->textStorage().lineStart(100), 10};
    view->editing().replace(changed, {}, QStringLiteral("Reemplazar"));
    view->verticalAxis().setPosition(0);
    view->undo();
    EXPECT_EQ(view->selectedRange(), changed);
    EXPECT_TRUE(isCaretVisible());
}

// Zoom.

TEST_F(TextViewScrollingTests, KeysAndTheWheelZoomInTenths) {
    open(QStringLiteral("abc"));
    const double advance = view->textLayout().font().advance();
    QSignalSpy zooms(view, &TextView::zoomDidChange);
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->zoom(), 1.1);
    EXPECT_GT(view->textLayout().font().advance(), advance);
    turnWheel({0, 120}, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->zoom(), 1.2);
    turnWheel({0, -60}, Qt::ControlModifier);
    turnWheel({0, -60}, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->zoom(), 1.1);
    press(Qt::Key_Minus, Qt::ControlModifier);
    press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->zoom(), 0.9);
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->zoom(), 1);
    EXPECT_DOUBLE_EQ(view->textLayout().font().advance(), advance);
    EXPECT_EQ(zooms.count(), 6);
    EXPECT_EQ(text(), QStringLiteral("abc"));
}

TEST_F(TextViewScrollingTests, ZoomHasLimits) {
    view->setZoom(100);
    EXPECT_DOUBLE_EQ(view->zoom(), 4);
    view->setZoom(0);
    EXPECT_DOUBLE_EQ(view->zoom(), 0.5);
}

TEST_F(TextViewScrollingTests, ZoomingKeepsTheTextThatIsAtTheTop) {
    open(numberedLines(400));
    view->verticalAxis().setPosition(100 * rowHeight());
    view->setZoom(1.5);
    EXPECT_EQ(view->visibleRows().front().line, 100);
    view->setZoom(0.7);
    EXPECT_EQ(view->visibleRows().front().line, 100);
}

TEST_F(TextViewScrollingTests, ZoomingKeepsTheColumnThatIsAtTheLeft) {
    open(QString(10'000, u'x'));
    const qint64 column = 5000;
    const auto advance = [this] { return view->textLayout().font().advance(); };
    view->scrollRangeToVisible({column, 0});
    view->horizontalAxis().setPosition(std::llround(column * advance()));
    view->setZoom(1.5);
    EXPECT_NEAR(static_cast<double>(view->horizontalAxis().position()), column * advance(), 2);
    view->setZoom(0.7);
    EXPECT_NEAR(static_cast<double>(view->horizontalAxis().position()), column * advance(), 2);
}

TEST_F(TextViewScrollingTests, AFieldNeedNotZoom) {
    view->setZoomable(false);
    press(Qt::Key_Plus, Qt::ControlModifier);
    turnWheel({0, 120}, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->zoom(), 1);
    EXPECT_FALSE(claims(Qt::Key_Plus, Qt::ControlModifier));
}

// Wrapping.

TEST_F(TextViewScrollingTests, WrappedRowsFitTheWidth) {
    QString words;
    for (int word = 0; word < 5000; ++word)
        words += QStringLiteral("word ");
    open(words + QStringLiteral("\nend"));
    view->setWrapping(TextView::Wrapping::toWidth);
    EXPECT_EQ(view->horizontalAxis().maximum(), 0);
    EXPECT_GT(view->verticalAxis().maximum(), 0);
    const auto rows = view->visibleRows();
    ASSERT_GT(rows.size(), 5U);
    EXPECT_TRUE(rows[0].beginsLine);
    EXPECT_FALSE(rows[1].beginsLine);
    EXPECT_EQ(rows[1].line, 0);
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(isCaretVisible());
    EXPECT_EQ(view->verticalAxis().position(), view->verticalAxis().maximum());
}

TEST_F(TextViewScrollingTests, ResizingKeepsTheTextThatIsAtTheTopOfWrappedRows) {
    QString words;
    for (int line = 0; line < 300; ++line)
        words += QStringLiteral("some words that do not fit into a narrow window because there are many of them, and "
                                "the more there are the more rows they need in the end\n");
    open(words);
    view->setWrapping(TextView::Wrapping::toWidth);
    view->verticalAxis().setPosition(view->verticalAxis().maximum() / 2);
    const qint64 top = view->visibleRange().location;
    window->resize(300, 500);
    EXPECT_LE(view->visibleRange().location, top);
    EXPECT_GE(view->visibleRange().location, top - 60);
    window->resize(900, 500);
    EXPECT_LE(view->visibleRange().location, top);
    EXPECT_GE(view->visibleRange().location, top - 160);
}

// Long lines.

TEST_F(TextViewScrollingTests, ALineOfHundredsOfMillionsIsMovedInAndTypedInLikeAnyOther) {
    constexpr qint64 length = 300'000'000;
    openRope(lineOf(length));
    press(Qt::Key_End);
    EXPECT_EQ(view->selectedRange(), (TextRange{length, 0}));
    EXPECT_TRUE(isCaretVisible());
    EXPECT_GT(view->horizontalAxis().position(), std::int64_t{length} * 5) << "pixels";
    type(QStringLiteral("abc"));
    EXPECT_EQ(view->textStorage().length(), length + 3);
    EXPECT_TRUE(isCaretVisible());

    click(QPoint(200, 5));
    const qint64 clicked = view->selectedRange().location;
    EXPECT_LT(clicked, length);
    EXPECT_GT(clicked, length - 200);
    EXPECT_NEAR(view->caretRectangle().left(), 200, view->textLayout().font().advance());
    view->selectAll();
    EXPECT_EQ(view->selectedRange(), (TextRange{0, length + 3}));
    painted();
    press(Qt::Key_Home);
    EXPECT_EQ(view->horizontalAxis().position(), 0);
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 1}));
    EXPECT_LT(view->textLayout().cachedPartCount(), 100);
}

TEST_F(TextViewScrollingTests, BillionsOfPixelsAreScrolledExactly) {
    openRope(lineOf(300'000'000));
    press(Qt::Key_End);
    const std::int64_t end = view->horizontalAxis().position();
    view->horizontalAxis().scrollBy(-1);
    EXPECT_EQ(view->horizontalAxis().position(), end - 1);
    view->horizontalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
    EXPECT_EQ(view->horizontalAxis().position(), 0);
}

} // namespace
} // namespace quelm
