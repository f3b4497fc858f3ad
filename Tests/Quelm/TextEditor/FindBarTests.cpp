#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/MatchMarks.h"
#include "Quelm/TextEditor/SymbolButton.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {
namespace {

constexpr int patience = 20'000; // milliseconds

class FindBarTests : public testing::Test {
protected:
    ~FindBarTests() override { window.reset(); }

    void open(std::string_view text) {
        window = std::make_unique<QWidget>();
        view = new TextView(std::make_shared<TextStorage>(TextRope(SharedText(text))));
        view->setUndoManager(&undoManager);
        bar = new FindBar(*view);
        auto* layout = new QVBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(bar);
        layout->addWidget(view, 1);
        window->resize(800, 400);
        window->show();
        view->setFocus();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    /// As Ctrl+F in the text.
    void openFind() { press(Qt::Key_F, Qt::ControlModifier); }

    /// In what has the focus.
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    static void type(const QString& text) {
        for (const QChar character : text)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(character.toUpper().unicode()),
                            character.isUpper() ? Qt::ShiftModifier : Qt::NoModifier);
    }

    /// By key, in the field that has the focus.
    static void paste(const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        press(Qt::Key_V, Qt::ControlModifier);
    }

    template <class Control>
    Control* control(const char* name) const {
        for (auto* found : bar->findChildren<Control*>())
            if (found->accessibleName() == QString::fromUtf8(name))
                return found;
        return nullptr;
    }
    QLineEdit* searchField() const { return control<QLineEdit>("Buscar"); }
    QLineEdit* replaceField() const { return control<QLineEdit>("Reemplazar por"); }
    void click(const char* name) const {
        auto* button = control<QAbstractButton>(name);
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }

    QString label(const char* description) const {
        for (auto* found : bar->findChildren<QLabel*>())
            if (found->accessibleDescription() == QString::fromUtf8(description))
                return found->text();
        return {};
    }
    QString count() const { return label("Resultados de la búsqueda"); }
    QString status() const { return label("Estado del reemplazo"); }
    bool waitForStatus(const QString& text) const {
        return QTest::qWaitFor([&] { return status() == text; }, patience);
    }

    std::string text() const { return std::string(view->textStorage().text().contiguous().view()); }
    QString selected() const { return view->textStorage().string(view->selectedRange()); }

    UndoManager undoManager;
    std::unique_ptr<QWidget> window;
    TextView* view = nullptr;
    FindBar* bar = nullptr;
};

TEST_F(FindBarTests, IsHiddenUntilItIsAskedFor) {
    open("uno");
    EXPECT_FALSE(bar->isVisible());
    openFind();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(searchField()->hasFocus());
    EXPECT_FALSE(replaceField()->isVisible());
}

TEST_F(FindBarTests, TypingSelectsTheFirstMatchFromWhereTheCaretWas) {
    open("clave clavel clave clavel");
    view->setSelectedRange({7, 0});
    openFind();
    type(QStringLiteral("cla"));
    EXPECT_EQ(view->selectedRange(), (TextRange{13, 3}));
    EXPECT_EQ(count(), QStringLiteral("3 de 4"));
    type(QStringLiteral("vel"));
    EXPECT_EQ(view->selectedRange(), (TextRange{19, 6}));
    EXPECT_EQ(count(), QStringLiteral("2 de 2"));
    press(Qt::Key_Backspace);
    EXPECT_EQ(view->selectedRange(), (TextRange{13, 5}));
    EXPECT_TRUE(searchField()->hasFocus());
}

TEST_F(FindBarTests, SaysThatNothingWasFound) {
    open("uno dos");
    view->setSelectedRange({4, 0});
    openFind();
    type(QStringLiteral("dx"));
    EXPECT_EQ(count(), QStringLiteral("Sin resultados"));
    EXPECT_EQ(view->selectedRange(), (TextRange{4, 0}));
    EXPECT_FALSE(control<QAbstractButton>("Siguiente")->isEnabled());
    press(Qt::Key_Backspace);
    EXPECT_EQ(count(), QStringLiteral("1 de 1"));
    EXPECT_TRUE(control<QAbstractButton>("Siguiente")->isEnabled());
    press(Qt::Key_Backspace);
    EXPECT_EQ(count(), QString());
}

TEST_F(FindBarTests, ReturnAndF3GoOnAndWithShiftBack) {
    open("uno dos uno dos uno");
    openFind();
    type(QStringLiteral("uno"));
    EXPECT_EQ(count(), QStringLiteral("1 de 3"));
    press(Qt::Key_Return);
    EXPECT_EQ(count(), QStringLiteral("2 de 3"));
    press(Qt::Key_F3);
    EXPECT_EQ(count(), QStringLiteral("3 de 3"));
    press(Qt::Key_Return);
    EXPECT_EQ(count(), QStringLiteral("1 de 3"));
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(count(), QStringLiteral("3 de 3"));
    press(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(count(), QStringLiteral("2 de 3"));
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
}

TEST_F(FindBarTests, ButtonsGoOnAndBack) {
    open("uno dos uno");
    openFind();
    type(QStringLiteral("uno"));
    click("Siguiente");
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
    click("Anterior");
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 3}));
}

TEST_F(FindBarTests, GoesAroundTheEndOnlyWhenToldTo) {
    open("uno dos uno");
    openFind();
    type(QStringLiteral("uno"));
    click("Continuar desde el principio");
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
    EXPECT_EQ(count(), QStringLiteral("No hay más resultados"));
    click("Continuar desde el principio");
    press(Qt::Key_Return);
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 3}));
    EXPECT_EQ(count(), QStringLiteral("1 de 2"));
}

TEST_F(FindBarTests, TellsCasesApartWhenToldTo) {
    open("Uno uno UNO");
    openFind();
    type(QStringLiteral("uno"));
    EXPECT_EQ(count(), QStringLiteral("1 de 3"));
    click("Distinguir mayúsculas");
    EXPECT_EQ(count(), QStringLiteral("1 de 1"));
    EXPECT_EQ(selected(), QStringLiteral("uno"));
}

TEST_F(FindBarTests, ASelectionWithinALineBecomesTheQuery) {
    open("uno dos\nuno");
    view->setSelectedRange({0, 3});
    openFind();
    EXPECT_EQ(searchField()->text(), QStringLiteral("uno"));
    EXPECT_EQ(searchField()->selectedText(), QStringLiteral("uno"));
    EXPECT_EQ(count(), QStringLiteral("1 de 2"));
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 3}));
    press(Qt::Key_Escape);
    view->setSelectedRange({4, 6});
    openFind();
    EXPECT_EQ(searchField()->text(), QStringLiteral("uno"));
}

TEST_F(FindBarTests, EscapeClosesAndGivesTheFocusBack) {
    open("uno dos uno");
    openFind();
    type(QStringLiteral("uno"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 3}));
    EXPECT_FALSE(bar->search().isFollowing());
    openFind();
    click("Cerrar");
    EXPECT_FALSE(bar->isVisible());
}

TEST_F(FindBarTests, F3GoesOnInTheTextWithTheBarClosed) {
    open("uno dos uno");
    openFind();
    type(QStringLiteral("uno"));
    press(Qt::Key_Escape);
    press(Qt::Key_F3);
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
    press(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 3}));
    EXPECT_FALSE(bar->isVisible());
}

TEST_F(FindBarTests, F3WithoutAQueryOpensTheBar) {
    open("uno");
    press(Qt::Key_F3);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(searchField()->hasFocus());
}

TEST_F(FindBarTests, CountsAnewAfterTyping) {
    open("uno dos");
    openFind();
    type(QStringLiteral("uno"));
    EXPECT_EQ(count(), QStringLiteral("1 de 1"));
    view->setFocus();
    view->setSelectedRange({7, 0});
    type(QStringLiteral("uno"));
    EXPECT_EQ(text(), "uno dosuno");
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() == QStringLiteral("2 resultados"); }, patience));
}

TEST_F(FindBarTests, ReplacesOneAndGoesOnToTheNext) {
    open("uno dos uno");
    press(Qt::Key_H, Qt::ControlModifier);
    EXPECT_TRUE(replaceField()->isVisible());
    type(QStringLiteral("uno"));
    press(Qt::Key_H, Qt::ControlModifier);
    EXPECT_TRUE(replaceField()->hasFocus());
    type(QStringLiteral("tres"));
    press(Qt::Key_Return);
    EXPECT_EQ(text(), "tres dos uno");
    EXPECT_EQ(view->selectedRange(), (TextRange{9, 3}));
    click("Reemplazar");
    EXPECT_EQ(text(), "tres dos tres");
    EXPECT_TRUE(replaceField()->hasFocus());
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Reemplazar"));
    undoManager.undo();
    EXPECT_EQ(text(), "tres dos uno");
    undoManager.undo();
    EXPECT_EQ(text(), "uno dos uno");
}

TEST_F(FindBarTests, ShowsAndHidesTheRowForReplacing) {
    open("uno");
    openFind();
    click("Mostrar reemplazo");
    EXPECT_TRUE(replaceField()->isVisible());
    EXPECT_TRUE(replaceField()->hasFocus());
    click("Ocultar reemplazo");
    EXPECT_FALSE(replaceField()->isVisible());
    EXPECT_TRUE(searchField()->hasFocus());
}

TEST_F(FindBarTests, LooksForAMatchBeforeItReplacesOne) {
    open("uno dos");
    press(Qt::Key_H, Qt::ControlModifier);
    type(QStringLiteral("dos"));
    view->setSelectedRange({0, 0});
    click("Reemplazar");
    EXPECT_EQ(text(), "uno dos");
    EXPECT_EQ(view->selectedRange(), (TextRange{4, 3}));
    click("Reemplazar");
    EXPECT_EQ(text(), "uno ");
}

TEST_F(FindBarTests, ReplacesAllInOneStep) {
    open("Uno dos uno dos UNO.");
    press(Qt::Key_H, Qt::ControlModifier);
    type(QStringLiteral("uno"));
    press(Qt::Key_Tab);
    ASSERT_TRUE(replaceField()->hasFocus());
    type(QStringLiteral("cuatro"));
    click("Reemplazar todo");
    ASSERT_TRUE(waitForStatus(QStringLiteral("3 reemplazos")));
    EXPECT_EQ(text(), "cuatro dos cuatro dos cuatro.");
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Reemplazar"));
    undoManager.undo();
    EXPECT_EQ(text(), "Uno dos uno dos UNO.");
    EXPECT_TRUE(waitForStatus(QString())) << "that is no longer so";
    EXPECT_FALSE(undoManager.canUndo());
    undoManager.redo();
    EXPECT_EQ(text(), "cuatro dos cuatro dos cuatro.");
}

TEST_F(FindBarTests, ReplacingAllLeavesTheCaretAndTheViewportWhereTheyAre) {
    std::string lines;
    for (int line = 0; line < 500; ++line)
        lines += "una clave y otra clave\n";
    open(lines);
    press(Qt::Key_H, Qt::ControlModifier);
    type(QStringLiteral("clave"));
    replaceField()->setText(QStringLiteral("palabra"));
    const qint64 caret = view->textStorage().lineStart(200) + 12;
    view->setSelectedRange({caret, 0});
    view->scrollRangeToVisible({caret, 0});
    const std::int64_t top = view->verticalAxis().position();
    EXPECT_GT(top, 0);
    click("Reemplazar todo");
    ASSERT_TRUE(waitForStatus(QStringLiteral("1000 reemplazos")));
    EXPECT_EQ(view->verticalAxis().position(), top);
    EXPECT_EQ(view->selectedRange(), (TextRange{view->textStorage().lineStart(200) + 12, 0}));
    QTest::qWait(1);
    EXPECT_EQ(view->verticalAxis().position(), top);
}

TEST_F(FindBarTests, PastedLineFeedsAreSearchedForMarkedAndCounted) {
    open("uno,\ndos,\ntres, cuatro");
    openFind();
    paste(QStringLiteral(",\n"));
    EXPECT_EQ(searchField()->text(), QStringLiteral(",\n"));
    EXPECT_EQ(count(), QStringLiteral("1 de 2"));
    EXPECT_EQ(view->selectedRange(), (TextRange{3, 2}));
    press(Qt::Key_Return);
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 2}));
    const std::vector<TextRange> marks = matchesNearViewport(*view, *bar->search().pattern(), nullptr);
    EXPECT_EQ(marks, (std::vector<TextRange>{{3, 2}, {8, 2}}));
    press(Qt::Key_Escape);
    openFind();
    EXPECT_EQ(searchField()->text(), QStringLiteral(",\n")) << "the selection has several lines";
}

TEST_F(FindBarTests, ReplacingAllLineFeedsLeavesTheCaretInTheLastLine) {
    std::string lines;
    for (int line = 0; line < 100; ++line)
        lines += "a,\n";
    open(lines + "b");
    view->setSelectedRange({view->textStorage().length(), 0});
    press(Qt::Key_H, Qt::ControlModifier);
    paste(QStringLiteral(",\n"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->search().count() == 100; }, patience));
    view->setSelectedRange({view->textStorage().length(), 0});
    press(Qt::Key_Tab);
    type(QStringLiteral("x"));
    click("Reemplazar todo");
    ASSERT_TRUE(waitForStatus(QStringLiteral("100 reemplazos")));
    EXPECT_EQ(text().substr(0, 4), "axax");
    EXPECT_EQ(view->textStorage().lineCount(), 1);
    EXPECT_EQ(view->selectedRange(), (TextRange{1, 0})) << "in the last line there is, and its column";
    undoManager.undo();
    EXPECT_EQ(text(), lines + "b");
}

TEST_F(FindBarTests, ReplacesByPastedLineFeeds) {
    open("a;b;c");
    press(Qt::Key_H, Qt::ControlModifier);
    paste(QStringLiteral(";"));
    press(Qt::Key_Tab);
    paste(QStringLiteral(",\n"));
    press(Qt::Key_Return);
    EXPECT_EQ(text(), "a,\nb;c");
    EXPECT_EQ(view->selectedRange(), (TextRange{4, 1}));
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(waitForStatus(QStringLiteral("1 reemplazo")));
    EXPECT_EQ(text(), "a,\nb,\nc");
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() == QStringLiteral("Sin resultados"); }, patience));
}

TEST_F(FindBarTests, TheTextMayBeEditedWhileAllIsReplaced) {
    std::string longText;
    for (int line = 0; line < 300'000; ++line)
        longText += "\"valor\": [\"valor\", \"valor\", \"valor\"],\n";
    open(longText);
    press(Qt::Key_H, Qt::ControlModifier);
    type(QStringLiteral("valor"));
    replaceField()->setText(QStringLiteral("x"));
    click("Reemplazar todo");
    EXPECT_EQ(status(), QStringLiteral("Reemplazando…"));
    view->setFocus();
    view->setSelectedRange({0, 0});
    type(QStringLiteral("z"));
    EXPECT_EQ(text().substr(0, 17), "z\"valor\": [\"valor");
    ASSERT_TRUE(waitForStatus(QStringLiteral("1.200.000 reemplazos")));
    EXPECT_EQ(text().substr(0, 12), "z\"x\": [\"x\", ");
    undoManager.undo();
    EXPECT_EQ(text(), "z" + longText);
}

TEST_F(FindBarTests, ReplacesNothingInATextThatIsOnlyRead) {
    open("uno");
    view->setReadOnly(true);
    press(Qt::Key_H, Qt::ControlModifier);
    type(QStringLiteral("uno"));
    EXPECT_EQ(count(), QStringLiteral("1 de 1"));
    EXPECT_FALSE(control<QPushButton>("Reemplazar")->isEnabled());
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    press(Qt::Key_Return, Qt::ControlModifier);
    QTest::qWait(20);
    EXPECT_EQ(text(), "uno");
}

TEST_F(FindBarTests, FindsAndDoesNotReplaceWhileTheTextIsOnlyRead) {
    open("uno dos uno");
    openFind();
    press(Qt::Key_H, Qt::ControlModifier);
    searchField()->setFocus();
    type(QStringLiteral("uno"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return count() == QStringLiteral("1 de 2"); }, patience));
    auto* replaceButton = control<QPushButton>("Reemplazar");
    auto* replaceAllButton = control<QPushButton>("Reemplazar todo");
    EXPECT_TRUE(replaceButton->isEnabled());
    EXPECT_TRUE(replaceAllButton->isEnabled());

    view->setReadOnly(true);
    EXPECT_FALSE(replaceButton->isEnabled());
    EXPECT_FALSE(replaceAllButton->isEnabled());
    click("Siguiente");
    ASSERT_TRUE(QTest::qWaitFor([this] { return count() == QStringLiteral("2 de 2"); }, patience));
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
    click("Reemplazar");
    click("Reemplazar todo");
    replaceField()->setFocus();
    press(Qt::Key_Return);
    press(Qt::Key_Return, Qt::ControlModifier);
    QTest::qWait(20);
    EXPECT_EQ(text(), "uno dos uno");

    view->setReadOnly(false);
    EXPECT_TRUE(replaceButton->isEnabled());
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(waitForStatus(QStringLiteral("2 reemplazos")));
    EXPECT_EQ(text(), " dos ");
}

TEST_F(FindBarTests, AReplacementUnderWayEndsWhenTheTextBecomesReadOnly) {
    std::string longText;
    for (int row = 0; row < 600'000; ++row)
        longText += "\"valor\": [\"valor\"], ";
    open(longText);
    press(Qt::Key_H, Qt::ControlModifier);
    searchField()->setFocus();
    paste(QStringLiteral("valor"));
    replaceField()->setFocus();
    type(QStringLiteral("x"));
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(status(), QStringLiteral("Reemplazando…"));
    view->setReadOnly(true);
    EXPECT_EQ(status(), QStringLiteral("Reemplazo cancelado"));
    EXPECT_FALSE(control<QPushButton>("Reemplazar todo")->isEnabled());
    view->setReadOnly(false);
    QTest::qWait(50);
    EXPECT_EQ(text(), longText);
    EXPECT_FALSE(undoManager.canUndo());

    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(waitForStatus(QStringLiteral("1.200.000 reemplazos")));
}

TEST_F(FindBarTests, AReplacementThatFindsTheTextLockedByItsOwnCompositionEnds) {
    open("uno uno");
    press(Qt::Key_H, Qt::ControlModifier);
    searchField()->setFocus();
    type(QStringLiteral("uno"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return count() == QStringLiteral("1 de 2"); }, patience));
    replaceField()->setFocus();
    press(Qt::Key_Return, Qt::ControlModifier);
    QInputMethodEvent composing(QStringLiteral("ni"), {});
    QApplication::sendEvent(view, &composing);
    QObject::connect(view, &TextView::textDidChange, view, [this] { view->setReadOnly(true); });
    ASSERT_TRUE(waitForStatus(QStringLiteral("Reemplazo cancelado")));
    EXPECT_EQ(QString::fromStdString(text()).remove(QStringLiteral("ni")), QStringLiteral(" uno"));
}

TEST_F(FindBarTests, StaysResponsiveInALongText) {
    std::string longText(50 << 20, 'a');
    longText += "aguja";
    open(longText);
    int turns = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, bar, [&turns] { ++turns; });
    ticks.start(0);
    openFind();
    type(QStringLiteral("aguja"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return count() == QStringLiteral("1 de 1"); }, patience));
    EXPECT_EQ(selected(), QStringLiteral("aguja"));
    EXPECT_GT(turns, 0);
}

TEST_F(FindBarTests, MayBeClosedAndDestroyedInTheMiddleOfASearch) {
    open(std::string(50 << 20, 'a'));
    openFind();
    type(QStringLiteral("b"));
    EXPECT_TRUE(bar->search().isFinding());
    press(Qt::Key_Escape);
    EXPECT_FALSE(bar->search().isFinding());
    openFind();
    type(QStringLiteral("c"));
    window.reset();
    QTest::qWait(20);
}

TEST_F(FindBarTests, EveryControlHasANameAndAToolTipOrPlaceholder) {
    open("uno");
    for (const auto* button : bar->findChildren<QAbstractButton*>()) {
        // The one within a field is Qt's own drawing of the symbol.
        if (qobject_cast<QLineEdit*>(button->parentWidget()))
            continue;
        EXPECT_FALSE(button->accessibleName().isEmpty());
        EXPECT_FALSE(button->toolTip().isEmpty());
    }
    for (const auto* field : bar->findChildren<QLineEdit*>())
        EXPECT_FALSE(field->accessibleName().isEmpty());
}

} // namespace
} // namespace quelm
