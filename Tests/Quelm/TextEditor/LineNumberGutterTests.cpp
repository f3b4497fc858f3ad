#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEditor/LineNumberGutter.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <utility>
#include <vector>

namespace quelm {
namespace {

QString numberedLines(int count) {
    QStringList lines;
    for (int line = 1; line <= count; ++line)
        lines += QStringLiteral("línea %1").arg(line);
    return lines.join(u'\n');
}

/// A text view with its gutter in a window, and its edits reported.
class LineNumberGutterTest : public testing::Test {
protected:
    void show(const QString& text) {
        storage_ = std::make_shared<TextStorage>();
        storage_->replaceCharacters({}, text);
        window_ = std::make_unique<QWidget>();
        view_ = new TextView(storage_);
        gutter_ = new LineNumberGutter(*view_);
        QObject::connect(storage_.get(), &TextStorage::didProcessEditing, gutter_,
                         [this](EditedMask mask, TextRange range, qint64 delta) {
                             if (mask == EditedMask::characters)
                                 gutter_->noteEdit(range, delta);
                         });
        auto* layout = new QHBoxLayout(window_.get());
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(gutter_);
        layout->addWidget(view_, 1);
        window_->resize(400, 200);
        window_->show();
        window_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    }

    void replaceAll(const QString& text) {
        storage_->replaceCharacters({0, storage_->length()}, text);
        QApplication::processEvents();
    }

    int widthFor(int digits) const {
        const double digitWidth = QFontMetricsF(gutter_->numberFont()).horizontalAdvance(u'8');
        return static_cast<int>(std::ceil(digitWidth * digits + scaledPixels(16)));
    }

    /// The middle of the first row of a line, from 0.
    QPoint middleOf(qint64 line) const {
        for (const TextView::VisibleRow& row : view_->visibleRows())
            if (row.line == line)
                return {gutter_->width() / 2, row.top + row.height / 2};
        ADD_FAILURE() << "line " << line << " is not visible";
        return {};
    }

    QString selectedText() const { return storage_->string(view_->selectedRange()); }

    /// What the gutter is to look like with these numbers in the view's rows from the top; 0 stands for none.
    QImage expected(const std::vector<qint64>& numbers, qint64 current, Appearance appearance) const {
        QImage image(gutter_->size(), QImage::Format_RGB32);
        image.fill(view_->viewport()->palette().color(QPalette::Base));
        QPainter painter(&image);
        painter.fillRect(QRect(image.width() - 1, 0, 1, image.height()),
                         semanticColor(ColorRole::separator, appearance));
        painter.setFont(gutter_->numberFont());
        const std::vector<TextView::VisibleRow> rows = view_->visibleRows();
        EXPECT_EQ(rows.size(), numbers.size());
        for (std::size_t index = 0; index < std::min(rows.size(), numbers.size()); ++index) {
            if (numbers[index] == 0)
                continue;
            const QString text = QString::number(numbers[index]);
            const double width = QFontMetricsF(gutter_->numberFont()).horizontalAdvance(text);
            const ColorRole role = numbers[index] == current ? ColorRole::text : ColorRole::tertiaryText;
            painter.setPen(semanticColor(role, appearance));
            painter.drawText(QPointF(image.width() - scaledPixels(8) - width, rows[index].top + rows[index].ascent),
                             text);
        }
        return image;
    }
    QImage expected(const std::vector<qint64>& numbers, qint64 current) const {
        return expected(numbers, current, Appearance::light);
    }

    QImage painted() const { return gutter_->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    /// The numbers of as many lines as there are rows in the viewport.
    std::vector<qint64> numbersFrom(qint64 first) const {
        std::vector<qint64> numbers(view_->visibleRows().size());
        for (qint64& number : numbers)
            number = first++;
        return numbers;
    }

    std::shared_ptr<TextStorage> storage_;
    std::unique_ptr<QWidget> window_;
    TextView* view_ = nullptr;
    LineNumberGutter* gutter_ = nullptr;
};

// The width.

TEST_F(LineNumberGutterTest, HasRoomForTwoDigitsAtFirst) {
    show(QString());
    EXPECT_EQ(gutter_->digits(), 2);
    EXPECT_EQ(gutter_->width(), widthFor(2));
}

TEST_F(LineNumberGutterTest, IsSizedForTheLinesThatTheTextHasAlready) {
    show(numberedLines(1'000));
    EXPECT_EQ(gutter_->digits(), 4);
    EXPECT_EQ(gutter_->width(), widthFor(4));
}

TEST_F(LineNumberGutterTest, NineAndNinetyNineLinesGiveTheSameWidthAndAHundredAGreaterOne) {
    show(QString());
    for (const int lines : {1, 9, 10, 99}) {
        replaceAll(numberedLines(lines));
        EXPECT_EQ(gutter_->digits(), 2) << lines;
        EXPECT_EQ(gutter_->width(), widthFor(2)) << lines;
    }
    for (const int lines : {100, 999}) {
        replaceAll(numberedLines(lines));
        EXPECT_EQ(gutter_->digits(), 3) << lines;
        EXPECT_EQ(gutter_->width(), widthFor(3)) << lines;
    }
    replaceAll(numberedLines(99));
    EXPECT_EQ(gutter_->width(), widthFor(2));
    EXPECT_LT(widthFor(2), widthFor(3));
}

TEST_F(LineNumberGutterTest, TheWidthFollowsAnEditFromTheEventLoop) {
    show(numberedLines(99));
    storage_->replaceCharacters({0, 0}, u"\n");
    EXPECT_EQ(gutter_->lineStarts().count(), 100) << "the list follows at once";
    EXPECT_EQ(gutter_->digits(), 2);
    QApplication::processEvents();
    EXPECT_EQ(gutter_->digits(), 3);
    EXPECT_EQ(gutter_->width(), widthFor(3));
}

TEST_F(LineNumberGutterTest, ATextWithCarriageReturnsOnlyIsNumberedAsOneLine) {
    show(QStringLiteral("a\rb\rc\r"));
    EXPECT_EQ(gutter_->lineStarts().count(), 1);
    EXPECT_EQ(painted(), expected({1}, 1));
}

TEST_F(LineNumberGutterTest, ZoomsAsTheTextDoes) {
    show(numberedLines(100));
    const int width = gutter_->width();
    const int size = gutter_->numberFont().pixelSize();
    view_->setZoom(2);
    EXPECT_EQ(gutter_->numberFont().pixelSize(), 2 * size);
    EXPECT_EQ(gutter_->width(), widthFor(3));
    EXPECT_GT(gutter_->width(), width);
    QApplication::processEvents();
    EXPECT_EQ(painted(), expected(numbersFrom(1), 1));
    view_->setZoom(1);
    EXPECT_EQ(gutter_->width(), width);
}

// The numbers.

TEST_F(LineNumberGutterTest, NumbersTheLinesBesideTheirRows) {
    show(numberedLines(3));
    EXPECT_EQ(painted(), expected({1, 2, 3}, 1));
}

TEST_F(LineNumberGutterTest, NumbersTheEmptyLineAfterTheLastLineFeed) {
    show(QStringLiteral("a\n"));
    EXPECT_EQ(painted(), expected({1, 2}, 1));
}

TEST_F(LineNumberGutterTest, AnEmptyTextHasOneLine) {
    show(QString());
    EXPECT_EQ(painted(), expected({1}, 1));
}

TEST_F(LineNumberGutterTest, TheLineOfTheSelectionsStartIsStronger) {
    show(numberedLines(5));
    EXPECT_NE(expected({1, 2, 3, 4, 5}, 1), expected({1, 2, 3, 4, 5}, 2));
    view_->setSelectedRange({storage_->lineStart(1), 0});
    EXPECT_EQ(painted(), expected({1, 2, 3, 4, 5}, 2));
    view_->setSelectedRange(TextRange::between(storage_->lineStart(2) - 1, storage_->lineStart(4)));
    EXPECT_EQ(painted(), expected({1, 2, 3, 4, 5}, 2));
    view_->setSelectedRange({storage_->length(), 0});
    EXPECT_EQ(painted(), expected({1, 2, 3, 4, 5}, 5));
}

/// Counts how often a widget is painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

    /// The paints since the last call that the event loop has brought.
    int next() {
        QApplication::processEvents();
        return std::exchange(count_, 0);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        count_ += event->type() == QEvent::Paint;
        return false;
    }

private:
    int count_ = 0;
};

TEST_F(LineNumberGutterTest, IsPaintedAgainWhenTheCaretOrTheTextMoves) {
    show(numberedLines(500));
    view_->setFocus();
    PaintCounter paints(*gutter_);
    paints.next();
    EXPECT_EQ(paints.next(), 0);
    QTest::keyClick(view_, Qt::Key_Down);
    EXPECT_EQ(paints.next(), 1);
    view_->verticalAxis().setPosition(1'000);
    EXPECT_EQ(paints.next(), 1);
    storage_->replaceCharacters({0, 0}, u"x");
    EXPECT_EQ(paints.next(), 1);
}

TEST_F(LineNumberGutterTest, TheNumbersFollowScrolling) {
    show(numberedLines(500));
    const int rowHeight = view_->visibleRows().front().height;
    for (const std::int64_t position : {0, 7, 3 * rowHeight, 100 * rowHeight + 5}) {
        view_->verticalAxis().setPosition(position);
        const qint64 first = view_->visibleRows().front().line + 1;
        EXPECT_EQ(painted(), expected(numbersFrom(first), 1)) << position;
    }
    view_->verticalAxis().setPosition(view_->verticalAxis().maximum());
    EXPECT_EQ(view_->visibleRows().back().line, 499);
    EXPECT_EQ(painted(), expected(numbersFrom(view_->visibleRows().front().line + 1), 1));
    EXPECT_GT(view_->visibleRows().front().line, 100);
}

TEST_F(LineNumberGutterTest, OfAWrappedLineOnlyTheFirstRowIsNumbered) {
    show(QStringLiteral("palabra ").repeated(20) + QStringLiteral("\nb"));
    view_->setWrapping(TextView::Wrapping::toWidth);
    QApplication::processEvents();
    std::vector<qint64> numbers;
    for (const TextView::VisibleRow& row : view_->visibleRows())
        numbers.push_back(numbers.empty() ? 1 : row.line == 1 ? 2 : 0);
    ASSERT_GT(numbers.size(), 3u);
    EXPECT_EQ(painted(), expected(numbers, 1));
}

TEST_F(LineNumberGutterTest, TakesTheColoursOfADarkView) {
    show(numberedLines(3));
    const QImage light = painted();
    window_->setPalette(ownPalette(Appearance::dark));
    EXPECT_EQ(painted(), expected({1, 2, 3}, 1, Appearance::dark));
    EXPECT_NE(painted(), light);
}

TEST_F(LineNumberGutterTest, OutlivesItsView) {
    show(numberedLines(100));
    delete view_;
    EXPECT_EQ(gutter_->textView(), nullptr);
    gutter_->noteEdit({0, 0}, 0);
    QTest::mouseClick(gutter_, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(painted().pixelColor(2, 2), gutter_->palette().color(QPalette::Base));
}

// The mouse.

TEST_F(LineNumberGutterTest, AClickSelectsTheLineWithItsLineFeed) {
    show(QStringLiteral("a\nbb\ncc"));
    QTest::mouseClick(gutter_, Qt::LeftButton, {}, middleOf(1));
    EXPECT_EQ(selectedText(), QStringLiteral("bb\n"));
    EXPECT_TRUE(view_->hasFocus());
    QTest::mouseClick(gutter_, Qt::LeftButton, {}, middleOf(2));
    EXPECT_EQ(selectedText(), QStringLiteral("cc"));
    QTest::mouseClick(gutter_, Qt::LeftButton, {}, {3, gutter_->height() - 2});
    EXPECT_EQ(selectedText(), QStringLiteral("cc")) << "below the text is its last line";
}

TEST_F(LineNumberGutterTest, ADragSelectsLinesInBothDirections) {
    show(numberedLines(6));
    QTest::mousePress(gutter_, Qt::LeftButton, {}, middleOf(2));
    QTest::mouseMove(gutter_, middleOf(4));
    EXPECT_EQ(selectedText(), QStringLiteral("línea 3\nlínea 4\nlínea 5\n"));
    EXPECT_EQ(view_->editing().selection().caret, storage_->lineStart(5));
    QTest::mouseMove(gutter_, middleOf(0));
    EXPECT_EQ(selectedText(), QStringLiteral("línea 1\nlínea 2\nlínea 3\n"));
    EXPECT_EQ(view_->editing().selection().caret, 0);
    QTest::mouseRelease(gutter_, Qt::LeftButton, {}, middleOf(0));
    QTest::mouseMove(gutter_, middleOf(5));
    EXPECT_EQ(selectedText(), QStringLiteral("línea 1\nlínea 2\nlínea 3\n")) << "the drag is over";
}

TEST_F(LineNumberGutterTest, AClickWithShiftExtendsTheSelectionByLines) {
    show(numberedLines(6));
    QTest::mouseClick(gutter_, Qt::LeftButton, {}, middleOf(2));
    QTest::mouseClick(gutter_, Qt::LeftButton, Qt::ShiftModifier, middleOf(4));
    EXPECT_EQ(selectedText(), QStringLiteral("línea 3\nlínea 4\nlínea 5\n"));
    QTest::mouseClick(gutter_, Qt::LeftButton, Qt::ShiftModifier, middleOf(1));
    EXPECT_EQ(selectedText(), QStringLiteral("línea 2\nlínea 3\n"));
    QTest::mouseClick(gutter_, Qt::LeftButton, Qt::ShiftModifier, middleOf(3));
    EXPECT_EQ(selectedText(), QStringLiteral("línea 3\nlínea 4\n"));
}

TEST_F(LineNumberGutterTest, OtherButtonsSelectNothing) {
    show(numberedLines(6));
    QTest::mouseClick(gutter_, Qt::RightButton, {}, middleOf(2));
    QTest::mouseClick(gutter_, Qt::MiddleButton, {}, middleOf(2));
    EXPECT_TRUE(view_->selectedRange().isEmpty());
}

TEST_F(LineNumberGutterTest, ADragBelowTheViewScrollsAndSelectsOn) {
    show(numberedLines(500));
    QTest::mousePress(gutter_, Qt::LeftButton, {}, middleOf(1));
    QTest::mouseMove(gutter_, {5, gutter_->height() + 60});
    const qint64 before = view_->selectedRange().end();
    EXPECT_TRUE(QTest::qWaitFor([&] { return view_->verticalAxis().position() > 200; }));
    EXPECT_GT(view_->selectedRange().end(), before);
    EXPECT_EQ(view_->selectedRange().location, storage_->lineStart(1));
    QTest::mouseRelease(gutter_, Qt::LeftButton, {}, {5, gutter_->height() + 60});
    const std::int64_t position = view_->verticalAxis().position();
    QTest::qWait(60);
    EXPECT_EQ(view_->verticalAxis().position(), position);
}

TEST_F(LineNumberGutterTest, TheWheelScrollsTheText) {
    show(numberedLines(500));
    const QPointF place(5, 20);
    QWheelEvent event(place, gutter_->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(gutter_, &event);
    EXPECT_GT(view_->verticalAxis().position(), 0);
}

} // namespace
} // namespace quelm
