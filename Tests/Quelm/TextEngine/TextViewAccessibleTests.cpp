#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEngine/TextViewAccessible.h"
#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QFontInfo>

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace quelm {
namespace {

constexpr int endOfText = -1;
constexpr int caretPlace = -2;

struct Unit {
    QString text;
    int start = 0;
    int end = 0;
    friend bool operator==(const Unit&, const Unit&) = default;
};

void PrintTo(const Unit& unit, std::ostream* stream) {
    *stream << '"' << unit.text.toStdString() << "\" from " << unit.start << " to " << unit.end;
}

class SpecialTextView : public TextView {
public:
    using TextView::TextView;
};

class TextViewAccessibleTests : public TextViewWindow {
protected:
    QAccessibleInterface& whole() const { return *QAccessible::queryAccessibleInterface(view); }
    QAccessibleTextInterface& reading() const { return *whole().textInterface(); }
    QAccessibleEditableTextInterface& editing() const { return *whole().editableTextInterface(); }

    Unit at(int offset, QAccessible::TextBoundaryType kind) const {
        Unit unit;
        unit.text = reading().textAtOffset(offset, kind, &unit.start, &unit.end);
        return unit;
    }
    Unit before(int offset, QAccessible::TextBoundaryType kind) const {
        Unit unit;
        unit.text = reading().textBeforeOffset(offset, kind, &unit.start, &unit.end);
        return unit;
    }
    Unit after(int offset, QAccessible::TextBoundaryType kind) const {
        Unit unit;
        unit.text = reading().textAfterOffset(offset, kind, &unit.start, &unit.end);
        return unit;
    }
    Unit attributes(int offset) const {
        Unit unit;
        unit.text = reading().attributes(offset, &unit.start, &unit.end);
        return unit;
    }
    TextRange selection(int index = 0) const {
        int start = 0;
        int end = 0;
        reading().selection(index, &start, &end);
        return TextRange::between(start, end);
    }
    QPoint global(QPoint place) const { return view->viewport()->mapToGlobal(place); }

    void openOneLine(qint64 length) {
        const std::string part = "{\"clave\": [1, 2, 3]},";
        std::string line;
        while (static_cast<qint64>(line.size()) < length)
            line += part;
        openRope(TextRope(SharedText(line)));
    }
};

TEST_F(TextViewAccessibleTests, AViewIsAnEditableText) {
    EXPECT_EQ(whole().role(), QAccessible::EditableText);
    EXPECT_EQ(whole().object(), view);
    EXPECT_TRUE(whole().isValid());
    EXPECT_NE(whole().textInterface(), nullptr);
    EXPECT_NE(whole().editableTextInterface(), nullptr);
    EXPECT_NE(whole().actionInterface(), nullptr);
    EXPECT_EQ(whole().parent(), QAccessible::queryAccessibleInterface(window.get()));
}

TEST_F(TextViewAccessibleTests, AViewOfASubclassIsOneToo) {
    SpecialTextView special(std::make_shared<TextStorage>(TextRope::repairing(std::string_view("hola"))));
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&special);
    EXPECT_EQ(interface->role(), QAccessible::EditableText);
    EXPECT_EQ(interface->textInterface()->text(0, endOfText), u"hola");
}

TEST_F(TextViewAccessibleTests, ItsNameIsTheWidgets) {
    view->setAccessibleName(QStringLiteral("Texto"));
    EXPECT_EQ(whole().text(QAccessible::Name), u"Texto");
}

TEST_F(TextViewAccessibleTests, ItsStateTellsHowItIsUsed) {
    QAccessible::State state = whole().state();
    EXPECT_TRUE(state.multiLine);
    EXPECT_TRUE(state.selectableText);
    EXPECT_TRUE(state.focusable);
    EXPECT_TRUE(state.focused);
    EXPECT_TRUE(state.editable);
    EXPECT_FALSE(state.readOnly);

    view->setReadOnly(true);
    view->clearFocus();
    state = whole().state();
    EXPECT_FALSE(state.editable);
    EXPECT_TRUE(state.readOnly);
    EXPECT_FALSE(state.focused);
}

TEST_F(TextViewAccessibleTests, AViewThatIsBeingDestroyedIsInvalid) {
    open(QStringLiteral("uno"));
    // Not of Qt's, which it deletes at this signal.
    const TextViewAccessible interface(*view);
    bool wasAsked = false;
    QObject::connect(view, &QObject::destroyed, [&] {
        wasAsked = true;
        EXPECT_FALSE(interface.isValid());
        EXPECT_TRUE(interface.state().invalid);
        EXPECT_EQ(interface.text(QAccessible::Value), QString());
    });
    window.reset();
    EXPECT_TRUE(wasAsked);
}

TEST_F(TextViewAccessibleTests, TheTextIsHandedOutByOffsets) {
    open(QStringLiteral("hola\n¿qué?|"));
    EXPECT_EQ(reading().characterCount(), 10);
    EXPECT_EQ(reading().text(0, 4), u"hola");
    EXPECT_EQ(reading().text(5, endOfText), u"¿qué?");
    EXPECT_EQ(reading().text(3, 0), u"hol");
    EXPECT_EQ(reading().text(0, caretPlace), u"hola\n¿qué?");
    EXPECT_EQ(reading().text(8, 1000), u"é?");
    EXPECT_EQ(reading().text(2, 2), QString());
    EXPECT_EQ(whole().text(QAccessible::Value), u"hola\n¿qué?");
}

TEST_F(TextViewAccessibleTests, NoHalvesOfSurrogatePairsAreHandedOut) {
    open(QStringLiteral("a\U0001F600b"));
    EXPECT_EQ(reading().characterCount(), 4);
    EXPECT_EQ(reading().text(0, 2), u"a");
    EXPECT_EQ(reading().text(2, 4), u"\U0001F600b");
    EXPECT_EQ(at(2, QAccessible::CharBoundary), (Unit{QStringLiteral("\U0001F600"), 1, 3}));
}

TEST_F(TextViewAccessibleTests, UnitsAroundAPlaceAreToldWithTheirBounds) {
    open(QStringLiteral("uno dos\ntres|"));
    EXPECT_EQ(at(5, QAccessible::CharBoundary), (Unit{QStringLiteral("o"), 5, 6}));
    EXPECT_EQ(at(5, QAccessible::WordBoundary), (Unit{QStringLiteral("dos"), 4, 7}));
    EXPECT_EQ(at(5, QAccessible::LineBoundary), (Unit{QStringLiteral("uno dos\n"), 0, 8}));
    EXPECT_EQ(before(5, QAccessible::CharBoundary), (Unit{QStringLiteral("d"), 4, 5}));
    EXPECT_EQ(before(5, QAccessible::WordBoundary), (Unit{QStringLiteral("uno "), 0, 4}));
    EXPECT_EQ(after(5, QAccessible::CharBoundary), (Unit{QStringLiteral("s"), 6, 7}));
    EXPECT_EQ(after(5, QAccessible::WordBoundary), (Unit{QStringLiteral("\n"), 7, 8}));
    EXPECT_EQ(after(5, QAccessible::LineBoundary), (Unit{QStringLiteral("tres"), 8, 12}));
    EXPECT_EQ(before(9, QAccessible::LineBoundary), (Unit{QStringLiteral("uno dos\n"), 0, 8}));
    // A caret at the very end still is in the last line.
    EXPECT_EQ(at(caretPlace, QAccessible::LineBoundary), (Unit{QStringLiteral("tres"), 8, 12}));
    EXPECT_EQ(at(endOfText, QAccessible::LineBoundary), (Unit{QStringLiteral("tres"), 8, 12}));
}

TEST_F(TextViewAccessibleTests, WhereThereIsNoUnitThereAreNoBounds) {
    open(QStringLiteral("uno\ndos"));
    const Unit none{QString(), -1, -1};
    EXPECT_EQ(before(1, QAccessible::LineBoundary), none);
    EXPECT_EQ(after(5, QAccessible::LineBoundary), none);
    EXPECT_EQ(at(8, QAccessible::CharBoundary), none);
    EXPECT_EQ(at(-3, QAccessible::CharBoundary), none);
    EXPECT_EQ(before(8, QAccessible::CharBoundary), none);
    EXPECT_EQ(after(8, QAccessible::CharBoundary), none);
}

TEST_F(TextViewAccessibleTests, TheCaretIsToldAndMoved) {
    open(QStringLiteral("uno\n|dos"));
    EXPECT_EQ(reading().cursorPosition(), 4);
    reading().setCursorPosition(6);
    EXPECT_EQ(marked(), u"uno\ndo|s");
    reading().setCursorPosition(endOfText);
    EXPECT_EQ(marked(), u"uno\ndos|");
    reading().setCursorPosition(1000);
    EXPECT_EQ(marked(), u"uno\ndos|");
}

TEST_F(TextViewAccessibleTests, ACaretThatIsMovedIsBetweenCharactersAndSeen) {
    open(QString(500, u'\n') + QStringLiteral("\U0001F469‍\U0001F467"));
    reading().setCursorPosition(503);
    EXPECT_EQ(view->selectedRange(), (TextRange{500, 0}));
    EXPECT_TRUE(isCaretVisible());
}

TEST_F(TextViewAccessibleTests, TheSelectionIsToldAndChanged) {
    open(QStringLiteral("uno ^dos| tres"));
    EXPECT_EQ(reading().selectionCount(), 1);
    EXPECT_EQ(selection(), (TextRange{4, 3}));
    EXPECT_EQ(selection(1), (TextRange{0, 0}));

    reading().setSelection(0, 8, 12);
    EXPECT_EQ(marked(), u"uno dos ^tres|");
    reading().setSelection(0, 3, 0);
    EXPECT_EQ(marked(), u"|uno^ dos tres");
    reading().setSelection(1, 4, 7);
    EXPECT_EQ(marked(), u"|uno^ dos tres");

    reading().removeSelection(1);
    EXPECT_EQ(reading().selectionCount(), 1);
    reading().removeSelection(0);
    EXPECT_EQ(marked(), u"|uno dos tres");
    EXPECT_EQ(reading().selectionCount(), 0);
    EXPECT_EQ(selection(), (TextRange{0, 0}));

    reading().addSelection(4, endOfText);
    EXPECT_EQ(marked(), u"uno ^dos tres|");
}

TEST_F(TextViewAccessibleTests, AttributesAreToldForTheRunOfACharacter) {
    open(QStringLiteral("{\"a\": 1}"));
    view->textStorage().setAttributes({1, 3}, {ColorRole::purple});
    const QFontInfo font(view->textLayout().font().font());
    const auto expected = [&](ColorRole role) {
        const QColor color = semanticColor(role);
        return QStringLiteral("color:rgb(%1,%2,%3);font-family:\"%4\";font-size:%5pt;")
            .arg(color.red())
            .arg(color.green())
            .arg(color.blue())
            .arg(font.family(), QString::number(font.pointSizeF()));
    };
    EXPECT_EQ(attributes(0), (Unit{expected(ColorRole::text), 0, 1}));
    EXPECT_EQ(attributes(2), (Unit{expected(ColorRole::purple), 1, 4}));
    EXPECT_EQ(attributes(8), (Unit{expected(ColorRole::text), 4, 8}));
    EXPECT_EQ(attributes(endOfText), attributes(8));
    EXPECT_EQ(attributes(9), (Unit{QString(), -1, -1}));

    open({});
    EXPECT_EQ(attributes(0), (Unit{QString(), -1, -1}));
}

TEST_F(TextViewAccessibleTests, CharactersHaveTheAreasTheyArePaintedIn) {
    open(QStringLiteral("ab\ncd"));
    const QRect first = reading().characterRect(0);
    const QRect second = reading().characterRect(1);
    const QRect below = reading().characterRect(3);
    EXPECT_EQ(first.topLeft(), global(view->caretRectangleAt(0).topLeft()));
    EXPECT_EQ(first.height(), view->textLayout().font().rowHeight());
    EXPECT_NEAR(first.width(), view->textLayout().font().advance(), 1);
    EXPECT_EQ(second.top(), first.top());
    EXPECT_NEAR(second.left(), first.left() + first.width(), 1);
    EXPECT_EQ(below.left(), first.left());
    EXPECT_EQ(below.top(), first.top() + first.height());
    // The end has the caret's.
    EXPECT_EQ(reading().characterRect(5), view->caretRectangleAt(5).translated(global({0, 0})));
    EXPECT_EQ(reading().characterRect(6), QRect());
}

TEST_F(TextViewAccessibleTests, AClusterHasOneArea) {
    open(QStringLiteral("a\U0001F469‍\U0001F467b"));
    const QRect family = reading().characterRect(1);
    EXPECT_EQ(reading().characterRect(4), family);
    EXPECT_GT(family.width(), view->textLayout().font().advance());
}

TEST_F(TextViewAccessibleTests, APlaceOnScreenHasTheCharacterThere) {
    open(QStringLiteral("uno dos\n\U0001F469‍\U0001F467 tres\nשלום"));
    for (const int offset : {0, 1, 5, 6, 8, 14, 17, 19, 20, 21, 22}) {
        const QRect area = reading().characterRect(offset);
        EXPECT_EQ(reading().offsetAtPoint(area.center()), offset);
        EXPECT_EQ(reading().offsetAtPoint(area.center() + QPoint(area.width() / 4, 0)), offset);
        EXPECT_EQ(reading().offsetAtPoint(area.center() - QPoint(area.width() / 4, 0)), offset);
    }
    EXPECT_EQ(reading().offsetAtPoint(reading().characterRect(6).center() + QPoint(200, 0)), 7);
    EXPECT_EQ(reading().offsetAtPoint(global({-5, 5})), -1);
    EXPECT_EQ(reading().offsetAtPoint(global({5, view->viewport()->height() + 5})), -1);
}

TEST_F(TextViewAccessibleTests, AStretchIsScrolledTo) {
    open(QString(500, u'\n') + QStringLiteral("fin"));
    EXPECT_FALSE(view->visibleRange().contains(500));
    reading().scrollToSubstring(500, 503);
    EXPECT_TRUE(view->visibleRange().contains(500));
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 0}));
}

TEST_F(TextViewAccessibleTests, AnInsertionIsOneStep) {
    open(QStringLiteral("uno| dos"));
    editing().insertText(4, QStringLiteral("y \U0001F600 "));
    EXPECT_EQ(marked(), u"uno y \U0001F600 |dos");
    EXPECT_EQ(undoManager.undoActionName(), u"Escribir");
    view->undo();
    EXPECT_EQ(marked(), u"uno |dos");
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewAccessibleTests, ADeletionIsOneStep) {
    open(QStringLiteral("uno| dos tres"));
    editing().deleteText(8, 4);
    EXPECT_EQ(marked(), u"uno |tres");
    EXPECT_EQ(undoManager.undoActionName(), u"Borrar");
    view->undo();
    EXPECT_EQ(text(), u"uno dos tres");
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewAccessibleTests, AReplacementIsOneStep) {
    open(QStringLiteral("uno| dos"));
    editing().replaceText(4, endOfText, QStringLiteral("dos\ntres"));
    EXPECT_EQ(marked(), u"uno dos\ntres|");
    EXPECT_EQ(undoManager.undoActionName(), u"Reemplazar");
    view->undo();
    EXPECT_EQ(text(), u"uno dos");
    EXPECT_FALSE(undoManager.canUndo());
    view->redo();
    EXPECT_EQ(text(), u"uno dos\ntres");
}

TEST_F(TextViewAccessibleTests, SettingTheValueReplacesAllInOneStep) {
    open(QStringLiteral("uno\ndos|"));
    whole().setText(QAccessible::Value, QStringLiteral("tres"));
    EXPECT_EQ(marked(), u"tres|");
    view->undo();
    EXPECT_EQ(text(), u"uno\ndos");
}

TEST_F(TextViewAccessibleTests, EditsGoToTheNearestPlacesThereAre) {
    open(QStringLiteral("uno"));
    editing().insertText(1000, QStringLiteral("!"));
    EXPECT_EQ(text(), u"uno!");
    editing().deleteText(3, 1000);
    EXPECT_EQ(text(), u"uno");
}

TEST_F(TextViewAccessibleTests, AReadOnlyTextRefusesEdits) {
    open(QStringLiteral("u^n|o"));
    view->setReadOnly(true);
    editing().insertText(0, QStringLiteral("x"));
    editing().deleteText(0, 2);
    editing().replaceText(0, 3, QStringLiteral("x"));
    whole().setText(QAccessible::Value, QStringLiteral("x"));
    EXPECT_EQ(marked(), u"u^n|o");
    EXPECT_FALSE(undoManager.canUndo());
    // Reading and selecting go on.
    reading().setSelection(0, 0, 3);
    EXPECT_EQ(marked(), u"^uno|");
}

TEST_F(TextViewAccessibleTests, AVeryLongLineIsHandedOutInBoundedPieces) {
    openOneLine(20'000'000);
    const int count = reading().characterCount();
    EXPECT_EQ(count, view->textStorage().length());
    EXPECT_EQ(reading().text(0, endOfText).size(), TextViewAccessible::longestText);
    EXPECT_EQ(reading().text(count - 100'000, count).size(), TextViewAccessible::longestText);
    EXPECT_EQ(whole().text(QAccessible::Value).size(), TextViewAccessible::longestText);

    reading().setCursorPosition(count / 2);
    EXPECT_TRUE(isCaretVisible());
    for (const auto kind : {QAccessible::LineBoundary, QAccessible::ParagraphBoundary, QAccessible::SentenceBoundary,
                            QAccessible::NoBoundary}) {
        const Unit unit = at(caretPlace, kind);
        EXPECT_LE(unit.text.size(), ReadingUnits::longestUnit);
        EXPECT_LE(unit.start, count / 2);
        EXPECT_GT(unit.end, count / 2);
    }
    const QRect area = reading().characterRect(count / 2);
    EXPECT_EQ(reading().offsetAtPoint(area.center()), count / 2);

    reading().setSelection(0, 0, endOfText);
    EXPECT_EQ(selection(), (TextRange{0, count}));
    editing().deleteText(10, count - 10);
    EXPECT_EQ(reading().characterCount(), 20);
    view->undo();
    EXPECT_EQ(reading().characterCount(), count);
    EXPECT_LE(view->textLayout().cachedPartCount(), 64);
}

TEST_F(TextViewAccessibleTests, WhatIntegersCannotCountIsTheGreatestOne) {
    // Doubling shares what there is, so that the text takes no more memory than its first piece.
    TextRope text(SharedText(std::string(1 << 20, 'x')));
    while (text.utf16Count() <= std::numeric_limits<int>::max())
        text = text + text;
    openRope(text);
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(reading().characterCount(), most);
    view->setSelectedRange({view->textStorage().length(), 0});
    EXPECT_EQ(reading().cursorPosition(), most);
    EXPECT_EQ(at(caretPlace, QAccessible::LineBoundary).end, most);
    EXPECT_EQ(reading().text(most - 10, caretPlace).size(), view->textStorage().length() - most + 10);
    view->setSelectedRange({5, view->textStorage().length() - 5});
    EXPECT_EQ(selection(), TextRange::between(5, most));
}

} // namespace
} // namespace quelm
