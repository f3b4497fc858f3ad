#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

namespace quelm {
namespace {

class TextViewMouseTests : public TextViewWindow {
protected:
    void doubleClick(QPoint place) { QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place); }
    void tripleClick(QPoint place) {
        doubleClick(place);
        click(place);
    }
};

TEST_F(TextViewMouseTests, AClickPutsTheCaretAtTheNearestPlace) {
    open(QStringLiteral("abcdef\nxyz"));
    const int advance = static_cast<int>(view->textLayout().font().advance());
    click(place(2) + QPoint(1, 0));
    EXPECT_EQ(marked(), QStringLiteral("ab|cdef\nxyz"));
    click(place(2) + QPoint(advance - 1, 0));
    EXPECT_EQ(marked(), QStringLiteral("abc|def\nxyz"));
    click(place(9));
    EXPECT_EQ(marked(), QStringLiteral("abcdef\nxy|z"));
}

TEST_F(TextViewMouseTests, AClickBesideOrBelowTheTextGoesToTheNearestPlaceToo) {
    open(QStringLiteral("abcdef\nxyz"));
    click(place(6) + QPoint(200, 0));
    EXPECT_EQ(marked(), QStringLiteral("abcdef|\nxyz"));
    click(QPoint(place(8).x(), view->viewport()->height() - 5));
    EXPECT_EQ(marked(), QStringLiteral("abcdef\nx|yz"));
}

TEST_F(TextViewMouseTests, AClickWithShiftExtendsTheSelection) {
    open(QStringLiteral("ab|cdef"));
    click(place(4), Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("ab^cd|ef"));
    click(place(1), Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("a|b^cdef")) << "the anchor stays";
}

TEST_F(TextViewMouseTests, DraggingSelectsCharacters) {
    open(QStringLiteral("abcdef\nxyz"));
    drag(place(1), place(9));
    EXPECT_EQ(marked(), QStringLiteral("a^bcdef\nxy|z"));
    click(place(0));
    drag(place(9), place(1));
    EXPECT_EQ(marked(), QStringLiteral("a|bcdef\nxy^z"));
}

TEST_F(TextViewMouseTests, ADoubleClickSelectsTheWordUnderTheMouse) {
    open(QStringLiteral("one two three"));
    const int advance = static_cast<int>(view->textLayout().font().advance());
    doubleClick(place(5));
    EXPECT_EQ(marked(), QStringLiteral("one ^two| three"));
    doubleClick(place(2) + QPoint(advance - 1, 0));
    EXPECT_EQ(marked(), QStringLiteral("^one| two three")) << "on the far half of its last letter";
}

TEST_F(TextViewMouseTests, DraggingAfterADoubleClickSelectsByWords) {
    open(QStringLiteral("one two three four"));
    // QTest's double clicks end with a release.
    QMouseEvent press(QEvent::MouseButtonDblClick, place(5), view->viewport()->mapToGlobal(place(5)), Qt::LeftButton,
                      Qt::LeftButton, {});
    QApplication::sendEvent(view->viewport(), &press);
    moveMouse(place(10));
    EXPECT_EQ(marked(), QStringLiteral("one ^two three| four"));
    moveMouse(place(1));
    EXPECT_EQ(marked(), QStringLiteral("|one two^ three four")) << "the first word stays selected";
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, place(1));
}

TEST_F(TextViewMouseTests, ATripleClickSelectsTheLineWithItsLineFeed) {
    open(QStringLiteral("one\ntwo three\nfour"));
    tripleClick(place(6));
    EXPECT_EQ(marked(), QStringLiteral("one\n^two three\n|four"));
    tripleClick(place(15));
    EXPECT_EQ(marked(), QStringLiteral("one\ntwo three\n^four|"));
}

TEST_F(TextViewMouseTests, DraggingAfterATripleClickSelectsByLines) {
    open(QStringLiteral("one\ntwo\nthree\nfour"));
    doubleClick(place(5));
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, place(5));
    moveMouse(place(10));
    EXPECT_EQ(marked(), QStringLiteral("one\n^two\nthree\n|four"));
    moveMouse(place(1));
    EXPECT_EQ(marked(), QStringLiteral("|one\ntwo\n^three\nfour"));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, place(1));
}

TEST_F(TextViewMouseTests, AClickElsewhereAfterADoubleClickIsAClick) {
    open(QStringLiteral("one two three"));
    doubleClick(place(5));
    click(place(11));
    EXPECT_EQ(marked(), QStringLiteral("one two thr|ee"));
}

TEST_F(TextViewMouseTests, AClickOnTheSelectionPutsTheCaretThere) {
    open(QStringLiteral("a^bcde|f"));
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, place(3));
    EXPECT_EQ(marked(), QStringLiteral("a^bcde|f")) << "it may be about to be dragged";
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, place(3));
    EXPECT_EQ(marked(), QStringLiteral("abc|def"));
}

TEST_F(TextViewMouseTests, HoldingTheMouseBelowTheViewScrollsAndSelectsOn) {
    open(QString(400, u'\n'));
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, QPoint(10, 100));
    moveMouse(QPoint(10, view->viewport()->height() + 60));
    const qint64 before = view->selectedRange().length;
    EXPECT_TRUE(QTest::qWaitFor([this, before] { return view->selectedRange().length > before + 20; }));
    EXPECT_GT(view->verticalAxis().position(), 0);

    moveMouse(QPoint(10, 100));
    const std::int64_t stopped = view->verticalAxis().position();
    QTest::qWait(100);
    EXPECT_EQ(view->verticalAxis().position(), stopped) << "within the view, it stops";
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, QPoint(10, 100));
}

TEST_F(TextViewMouseTests, ScrollingGoesOnSidewaysToo) {
    open(QString(1000, u'x'));
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, place(10));
    moveMouse(QPoint(view->viewport()->width() + 100, place(10).y()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return view->horizontalAxis().position() > 500; }));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, QPoint(10, 100));
    const std::int64_t stopped = view->horizontalAxis().position();
    QTest::qWait(100);
    EXPECT_EQ(view->horizontalAxis().position(), stopped);
}

TEST_F(TextViewMouseTests, TheMiddleButtonPastesWhatWasSelectedWhereThePlatformKnowsThat) {
    const bool isKnown = QGuiApplication::clipboard()->supportsSelection();
    open(QStringLiteral("abcdef"));
    drag(place(1), place(3));
    QTest::mouseClick(view->viewport(), Qt::MiddleButton, {}, place(5));
    EXPECT_EQ(marked(), isKnown ? QStringLiteral("abcdebc|f") : QStringLiteral("a^bc|def"));
}

// The context menu.

TEST_F(TextViewMouseTests, TheContextMenuOffersWhatCanBeDone) {
    open(QStringLiteral("a^b|c"));
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    const auto titles = [this](bool enabled) {
        QStringList result;
        const std::unique_ptr<QMenu> menu(view->makeContextMenu());
        for (const QAction* action : menu->actions())
            if (!action->isSeparator() && action->isEnabled() == enabled)
                result += action->text().section(u'\t', 0, 0);
        return result.join(u',');
    };
    EXPECT_EQ(titles(true), QStringLiteral("Cortar,Copiar,Pegar,Eliminar,Seleccionar todo"));
    EXPECT_EQ(titles(false), QStringLiteral("Deshacer,Rehacer"));
    type(QStringLiteral("y"));
    EXPECT_EQ(titles(true), QStringLiteral("Deshacer Escribir,Pegar,Seleccionar todo"));
    view->selectAll();
    view->setReadOnly(true);
    EXPECT_EQ(titles(true), QStringLiteral("Copiar,Seleccionar todo"));
}

TEST_F(TextViewMouseTests, ARightClickOutsideOfTheSelectionMovesTheCaretFirst) {
    open(QStringLiteral("a^bc|def"));
    const auto ask = [this](QPoint place) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
        QApplication::sendEvent(view->viewport(), &event);
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        QApplication::activePopupWidget()->close();
    };
    ask(place(2));
    EXPECT_EQ(marked(), QStringLiteral("a^bc|def"));
    ask(place(5));
    EXPECT_EQ(marked(), QStringLiteral("abcde|f"));
}

TEST_F(TextViewMouseTests, TheMenusEntriesDoWhatTheySay) {
    open(QStringLiteral("a^b|c"));
    const auto trigger = [this](const QString& title) {
        const std::unique_ptr<QMenu> menu(view->makeContextMenu());
        for (QAction* action : menu->actions())
            if (action->text().section(u'\t', 0, 0) == title)
                action->trigger();
    };
    trigger(QStringLiteral("Cortar"));
    EXPECT_EQ(marked(), QStringLiteral("a|c"));
    trigger(QStringLiteral("Pegar"));
    EXPECT_EQ(marked(), QStringLiteral("ab|c"));
    trigger(QStringLiteral("Deshacer Pegar"));
    trigger(QStringLiteral("Deshacer Cortar"));
    EXPECT_EQ(marked(), QStringLiteral("a^b|c"));
    trigger(QStringLiteral("Rehacer Cortar"));
    EXPECT_EQ(marked(), QStringLiteral("a|c"));
    trigger(QStringLiteral("Seleccionar todo"));
    trigger(QStringLiteral("Eliminar"));
    EXPECT_EQ(marked(), QStringLiteral("|"));
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Borrar"));
}

} // namespace
} // namespace quelm
