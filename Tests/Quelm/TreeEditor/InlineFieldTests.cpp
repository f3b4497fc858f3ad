#include "Tests/Quelm/TreeEditor/InlineFieldWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QShortcut>
#include <QTest>

#include <gmock/gmock.h>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InlineFieldTests : public InlineFieldWindow {};

TEST_F(InlineFieldTests, TakesTheFocusWithAllTextSelectedAndTheCaretAtTheEnd) {
    openKey("clave");
    EXPECT_TRUE(view().hasFocus());
    EXPECT_EQ(view().editing().selection(), (TextSelection{0, 5}));
    type(QStringLiteral("x"));
    EXPECT_EQ(text(), "x");
}

TEST_F(InlineFieldTests, ReturnCommitsAnUnchangedText) {
    openString("hola");
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit hola"));
    EXPECT_TRUE(field->isFinished());
}

TEST_F(InlineFieldTests, EnterOfTheKeypadCommitsWhatWasTyped) {
    openNumber("1");
    type(QStringLiteral("25"));
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_THAT(calls, ElementsAre("commit 25"));
}

TEST_F(InlineFieldTests, ReturnCancelsATextThatIsNotValid) {
    openNumber("1");
    type(QStringLiteral("12"));
    EXPECT_TRUE(field->isValid());
    type(QStringLiteral("a"));
    EXPECT_FALSE(field->isValid());
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("cancel"));
}

TEST_F(InlineFieldTests, ATextThatIsMendedIsValidAgain) {
    openNumber("1");
    type(QStringLiteral("12a"));
    press(Qt::Key_Backspace);
    EXPECT_TRUE(field->isValid());
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit 12"));
}

TEST_F(InlineFieldTests, ValidityFollowsTheKind) {
    struct Case {
        std::optional<NodeKind> kind;
        QString typed;
        bool isValid;
    };
    const std::vector<Case> cases{
        {NodeKind::number, QStringLiteral("-1.5e+10"), true}, {NodeKind::number, QStringLiteral("01"), false},
        {NodeKind::number, QStringLiteral(" 1"), false},      {NodeKind::number, QStringLiteral("1 "), false},
        {NodeKind::number, QStringLiteral("-"), false},       {NodeKind::number, QStringLiteral("١"), false},
        {NodeKind::bool_, QStringLiteral("true"), true},      {NodeKind::bool_, QStringLiteral("false"), true},
        {NodeKind::bool_, QStringLiteral("falsee"), false},   {NodeKind::null, QStringLiteral("null"), false},
        {NodeKind::string, QStringLiteral("12a"), true},      {std::nullopt, QStringLiteral("12a"), true},
    };
    for (const Case& each : cases) {
        open(each.kind, "");
        type(each.typed);
        EXPECT_EQ(field->isValid(), each.isValid) << each.typed.toStdString();
    }
}

TEST_F(InlineFieldTests, AnEmptyTextIsAKeyAndAStringButNoNumber) {
    openKey("clave");
    press(Qt::Key_Delete);
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit "));
    openString("texto");
    press(Qt::Key_Backspace);
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit "));
    openNumber("1");
    press(Qt::Key_Backspace);
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("cancel"));
}

TEST_F(InlineFieldTests, ATextThatIsNotValidFromTheStartIsSeen) {
    openNumber("doce");
    EXPECT_FALSE(field->isValid());
}

TEST_F(InlineFieldTests, EscapeCancelsOnceWhateverComesThen) {
    openString("hola");
    type(QStringLiteral("adiós"));
    press(Qt::Key_Escape);
    EXPECT_THAT(calls, ElementsAre("cancel"));
    QTest::mouseClick(other, Qt::LeftButton);
    press(Qt::Key_Return);
    field->finish();
    field->cancel();
    EXPECT_THAT(calls, ElementsAre("cancel"));
}

TEST_F(InlineFieldTests, ReturnAndThenLosingTheFocusCommitOnce) {
    openString("hola");
    press(Qt::Key_Return);
    other->setFocus();
    press(Qt::Key_Escape);
    EXPECT_THAT(calls, ElementsAre("commit hola"));
}

TEST_F(InlineFieldTests, TabCommitsAndThenGoesOn) {
    openKey("clave");
    field->onTab = [this] { calls.emplace_back("tab"); };
    type(QStringLiteral("otra"));
    press(Qt::Key_Tab);
    EXPECT_THAT(calls, ElementsAre("commit otra", "tab"));
    EXPECT_TRUE(view().hasFocus());
}

TEST_F(InlineFieldTests, TabGoesOnOnce) {
    openKey("clave");
    field->onTab = [this] { calls.emplace_back("tab"); };
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    EXPECT_THAT(calls, ElementsAre("commit clave"));
}

TEST_F(InlineFieldTests, TabWithNowhereToGoMovesTheFocusAsUsual) {
    openString("hola");
    press(Qt::Key_Tab);
    EXPECT_TRUE(other->hasFocus());
    EXPECT_THAT(calls, ElementsAre("commit hola"));
}

TEST_F(InlineFieldTests, BacktabMovesTheFocusAsUsual) {
    openKey("clave");
    field->onTab = [this] { calls.emplace_back("tab"); };
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(other->hasFocus());
    EXPECT_THAT(calls, ElementsAre("commit clave"));
}

TEST_F(InlineFieldTests, ReturnWithShiftOrAltIsALineFeedInAString) {
    openString("ab");
    press(Qt::Key_Right);
    press(Qt::Key_Return, Qt::ShiftModifier);
    type(QStringLiteral("c"));
    press(Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(text(), "ab\nc\n");
    EXPECT_THAT(calls, IsEmpty());
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit ab\nc\n"));
}

TEST_F(InlineFieldTests, ReturnWithShiftCommitsWhereThereIsOneLine) {
    openKey("clave");
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_THAT(calls, ElementsAre("commit clave"));
}

TEST_F(InlineFieldTests, ReturnWithControlIsNotForTheField) {
    openString("ab");
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(text(), "ab");
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_FALSE(claims(Qt::Key_Return, Qt::ControlModifier));
}

TEST_F(InlineFieldTests, AKeyThatIsStillHeldDoesNotCloseTheField) {
    openString("ab");
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
    QApplication::sendEvent(&view(), &repeated);
    EXPECT_TRUE(repeated.isAccepted());
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(text(), "ab");
}

TEST_F(InlineFieldTests, ClaimsItsKeysFromShortcuts) {
    openKey("clave");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down})
        EXPECT_TRUE(claims(key)) << key;
    EXPECT_TRUE(claims(Qt::Key_Z, Qt::ControlModifier));
    EXPECT_FALSE(claims(Qt::Key_Tab));
    EXPECT_FALSE(claims(Qt::Key_Backtab, Qt::ShiftModifier));
    EXPECT_FALSE(claims(Qt::Key_S, Qt::ControlModifier));
    EXPECT_FALSE(claims(Qt::Key_F2));
    field->onTab = [] {};
    EXPECT_TRUE(claims(Qt::Key_Tab));
}

TEST_F(InlineFieldTests, AShortcutOfTheWindowDoesNotTakeItsKeys) {
    int shortcuts = 0;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        auto* shortcut = new QShortcut(QKeySequence(key), window.get());
        QObject::connect(shortcut, &QShortcut::activated, window.get(), [&shortcuts] { ++shortcuts; });
    }
    openString("a");
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit a"));
    openString("a");
    press(Qt::Key_Escape);
    EXPECT_THAT(calls, ElementsAre("cancel"));
    EXPECT_EQ(shortcuts, 0);
}

TEST_F(InlineFieldTests, UpAndDownGoToTheEndsOfOneLine) {
    openKey("clave");
    press(Qt::Key_Up);
    EXPECT_EQ(view().editing().selection(), TextSelection::at(0));
    press(Qt::Key_Down);
    EXPECT_EQ(view().editing().selection(), TextSelection::at(5));
    press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(view().editing().selection(), (TextSelection{5, 0}));
}

TEST_F(InlineFieldTests, NothingReachesWhatIsBelow) {
    for (const bool isLong : {false, true}) {
        openKey(isLong ? std::string(500, 'a') : std::string("clave"));
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp,
                                  Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End, Qt::Key_F2, Qt::Key_Space})
            for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::AltModifier, Qt::ControlModifier})
                press(key, modifiers);
        press(Qt::Key_Return, Qt::ControlModifier);
        turnWheel(1);
        turnWheel(-1);
        for (const QPoint place : {QPoint(0, 0), QPoint(1, field->height() / 2), field->rect().bottomRight()}) {
            QTest::mouseClick(field, Qt::LeftButton, {}, place);
            QTest::mouseClick(field, Qt::RightButton, {}, place);
        }
        EXPECT_EQ(below->events, 0);
        EXPECT_THAT(calls, IsEmpty());
        EXPECT_TRUE(view().hasFocus());
    }
}

TEST_F(InlineFieldTests, AnAbandonedFieldCallsNobody) {
    openKey("clave");
    field->onTab = [this] { calls.emplace_back("tab"); };
    field->abandon();
    EXPECT_TRUE(field->isFinished());
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    other->setFocus();
    delete field;
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(InlineFieldTests, IsSilentWhenItIsDeleted) {
    openKey("clave");
    delete field;
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(InlineFieldTests, WhoeverIsCalledMayDeleteIt) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab}) {
        openKey("clave");
        field->onTab = [this] { calls.emplace_back("tab"); };
        field->onCommit = [this](const SharedText& text) {
            delete field;
            calls.emplace_back(text.view());
        };
        field->onCancel = [this] {
            delete field;
            calls.emplace_back("cancel");
        };
        press(key);
        EXPECT_FALSE(field);
        if (key == Qt::Key_Tab)
            EXPECT_THAT(calls, ElementsAre("clave", "tab"));
        else
            EXPECT_THAT(calls, ElementsAre(key == Qt::Key_Return ? "clave" : "cancel"));
    }
    EXPECT_EQ(below->events, 0);
}

TEST_F(InlineFieldTests, TypingIsUndoneWithin) {
    openString("hola");
    press(Qt::Key_End);
    type(QStringLiteral(" y adiós"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), "hola");
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(text(), "hola y adiós");
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit hola"));
}

TEST_F(InlineFieldTests, UndoingAnInvalidTextMakesItValid) {
    openNumber("12");
    press(Qt::Key_End);
    type(QStringLiteral("x"));
    EXPECT_FALSE(field->isValid());
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(field->isValid());
}

} // namespace
} // namespace quelm
