#include "Quelm/Foundation/TextMimeData.h"
#include "Tests/Quelm/TextEngine/TextViewWindow.h"
#include "TextCore/SharedText.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QTest>
#include <QUrl>

namespace quelm {
namespace {

class TextViewClipboardTests : public TextViewWindow {
protected:
    static QClipboard* clipboard() { return QGuiApplication::clipboard(); }

    /// Whether the view lets something be dropped there.
    bool enter(const QMimeData& data, QPoint place) {
        QDragEnterEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QApplication::sendEvent(view->viewport(), &event);
        return event.isAccepted();
    }
    void hover(const QMimeData& data, QPoint place) {
        QDragMoveEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view->viewport(), &event);
    }
    void drop(const QMimeData& data, QPoint place) {
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view->viewport(), &event);
    }
    /// Drops the selection that is being dragged.
    void dropSelection(QPoint place, Qt::DropAction action) {
        TextMimeData data(view->textStorage().text(view->selectedRange()));
        data.setOwner(*view);
        ASSERT_TRUE(enter(data, place));
        QDropEvent event(place, action, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view->viewport(), &event);
    }
};

TEST_F(TextViewClipboardTests, CopyingAndPastingKeepEveryCharacter) {
    open(QStringLiteral("x^á\t\"q\" \U0001F600\u2028\u00A0\r\n|y"));
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard()->text(), QStringLiteral("á\t\"q\" \U0001F600\u2028\u00A0\r\n"));
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("xá\t\"q\" \U0001F600\u2028\u00A0\r\nyá\t\"q\" \U0001F600\u2028\u00A0\r\n"));
}

TEST_F(TextViewClipboardTests, CuttingAndPastingAreStepsOfTheirOwn) {
    open(QStringLiteral("a^bc|d"));
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(marked(), QStringLiteral("a|d"));
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Cortar"));
    press(Qt::Key_End);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(marked(), QStringLiteral("adbc|"));
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Pegar"));
}

TEST_F(TextViewClipboardTests, TheKeysOfOldDoTheSame) {
    open(QStringLiteral("a^bc|d"));
    press(Qt::Key_Insert, Qt::ControlModifier);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("a|d"));
    press(Qt::Key_Insert, Qt::ShiftModifier);
    press(Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("abcbc|d"));
}

TEST_F(TextViewClipboardTests, AByteOrderMarkIsACharacterLikeOthers) {
    open(QStringLiteral("x^\uFEFF|y"));
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(clipboard()->text(), QStringLiteral("\uFEFF"));
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(marked(), QStringLiteral("x\uFEFF|y"));
}

TEST_F(TextViewClipboardTests, ByteOrderMarksStayWhereverTheTextIsCut) {
    TextRope rope;
    QString expected;
    for (int part = 0; part < 2000; ++part) {
        const std::u16string units = u"\uFEFF" + std::u16string(1 + part % 7, u'é');
        rope = rope + TextRope::repairing(units);
        expected += QStringView(units);
    }
    EXPECT_TRUE(TextMimeData(rope).text() == expected) << "thousands of units";
}

TEST_F(TextViewClipboardTests, WithoutASelectionTheClipboardStays) {
    clipboard()->setText(QStringLiteral("kept"));
    open(QStringLiteral("a|b"));
    view->copy();
    view->cut();
    EXPECT_EQ(clipboard()->text(), QStringLiteral("kept"));
    EXPECT_EQ(text(), QStringLiteral("ab"));
}

TEST_F(TextViewClipboardTests, LoneSurrogatesAreRepairedWhenPasted) {
    clipboard()->setText(QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b"));
    view->paste();
    EXPECT_EQ(text(), QStringLiteral("a\uFFFDb"));
}

TEST_F(TextViewClipboardTests, WhatWasCopiedStaysWhenTheTextChanges) {
    open(QStringLiteral("^abc|"));
    view->copy();
    type(QStringLiteral("x"));
    EXPECT_EQ(clipboard()->text(), QStringLiteral("abc"));
}

TEST_F(TextViewClipboardTests, SelectingAndCopyingAHugeTextCopiesNoCharacters) {
    TextBuilder builder(300'000'000);
    std::fill_n(builder.room(300'000'000), 300'000'000, 'x');
    builder.advance(300'000'000);
    openRope(TextRope(builder.finish()));
    view->selectAll();
    view->copy();
    const auto* data = dynamic_cast<const TextMimeData*>(clipboard()->mimeData());
    ASSERT_NE(data, nullptr) << "a snapshot rather than characters";
    EXPECT_TRUE(data->hasText());
    clipboard()->clear();
}

TEST_F(TextViewClipboardTests, ASnapshotGivesTextAndBytes) {
    const TextRope rope = TextRope::repairing(std::u16string_view(u"aé\U0001F600b"));
    const TextMimeData data(rope.slice({1, 6}));
    EXPECT_EQ(data.text(), QStringLiteral("é\U0001F600"));
    EXPECT_EQ(data.data(QStringLiteral("text/plain")), QStringLiteral("é\U0001F600").toUtf8());
    EXPECT_FALSE(data.hasFormat(QStringLiteral("text/html")));
    EXPECT_EQ(data.formats(), QStringList(QStringLiteral("text/plain")));
}

// Drops.

TEST_F(TextViewClipboardTests, DroppedTextIsInsertedWhereItFalls) {
    open(QStringLiteral("ab|cd"));
    QMimeData data;
    data.setText(QStringLiteral("XY"));
    EXPECT_TRUE(enter(data, place(1)));
    drop(data, place(1));
    EXPECT_EQ(marked(), QStringLiteral("aXY|bcd"));
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Pegar"));
}

TEST_F(TextViewClipboardTests, ACaretShowsWhereADropWouldFall) {
    open(QStringLiteral("ab|cd"));
    QMimeData data;
    data.setText(QStringLiteral("XY"));
    const QImage before = painted();
    enter(data, place(4));
    hover(data, place(4));
    const QImage during = painted();
    EXPECT_NE(during.pixelColor(place(4)), before.pixelColor(place(4)));
    QDragLeaveEvent leave;
    QApplication::sendEvent(view->viewport(), &leave);
    EXPECT_EQ(painted().pixelColor(place(4)), before.pixelColor(place(4)));
}

TEST_F(TextViewClipboardTests, HoveringNearAnEdgeScrolls) {
    open(QString(400, u'\n'));
    QMimeData data;
    data.setText(QStringLiteral("XY"));
    enter(data, QPoint(50, 100));
    hover(data, QPoint(50, view->viewport()->height() - 2));
    EXPECT_TRUE(QTest::qWaitFor([this] { return view->verticalAxis().position() > 20; }));
    drop(data, QPoint(50, 100));
}

TEST_F(TextViewClipboardTests, FilesAndOtherThingsAreNotForTheText) {
    open(QStringLiteral("ab"));
    QMimeData files;
    files.setText(QStringLiteral("file:///x.json"));
    files.setUrls({QUrl(QStringLiteral("file:///x.json"))});
    EXPECT_FALSE(enter(files, place(1)));
    QMimeData image;
    image.setData(QStringLiteral("image/png"), "x");
    EXPECT_FALSE(enter(image, place(1)));
    QMimeData data;
    data.setText(QStringLiteral("XY"));
    view->setReadOnly(true);
    EXPECT_FALSE(enter(data, place(1)));
}

TEST_F(TextViewClipboardTests, DraggingTheSelectionMovesIt) {
    open(QStringLiteral("^ab|cdef"));
    dropSelection(place(4), Qt::MoveAction);
    EXPECT_EQ(marked(), QStringLiteral("cd^ab|ef"));
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Mover"));
    view->undo();
    EXPECT_EQ(text(), QStringLiteral("abcdef"));
}

TEST_F(TextViewClipboardTests, DraggingTheSelectionOntoItselfChangesNothing) {
    open(QStringLiteral("a^bcd|ef"));
    dropSelection(place(3), Qt::MoveAction);
    EXPECT_EQ(marked(), QStringLiteral("a^bcd|ef"));
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewClipboardTests, DraggingWithControlCopies) {
    open(QStringLiteral("^ab|cdef"));
    dropSelection(place(4), Qt::CopyAction);
    EXPECT_EQ(marked(), QStringLiteral("abcdab|ef"));
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Pegar"));
}

} // namespace
} // namespace quelm
