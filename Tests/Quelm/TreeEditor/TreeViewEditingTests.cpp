#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TreeWindow.h"

#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Field = TreeEditor::Field;

class TreeViewEditingTests : public TreeWindow {
protected:
    bool isEditing() const { return view->inlineField() != nullptr; }
    bool hasFieldFocus() const { return isEditing() && field().textView().hasFocus(); }

    /// The field's stretch of the viewport.
    QRect fieldArea() const { return field().geometry(); }
};

// Opening and ending.

TEST_F(TreeViewEditingTests, ReturnOpensTheValueCommitsItAndOpensItAgain) {
    open(R"({"a":1})");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_TRUE(hasFieldFocus());
    EXPECT_EQ(fieldText(), QStringLiteral("1"));
    enter(QStringLiteral("25"));
    pressInField(Qt::Key_Return);
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(json(), R"({"a":25})");
    press(Qt::Key_Return);
    EXPECT_TRUE(hasFieldFocus());
}

TEST_F(TreeViewEditingTests, EveryKeyThatActivatesOpensAField) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2}) {
        open(R"({"a":1})");
        press(Qt::Key_Down);
        press(key);
        EXPECT_TRUE(hasFieldFocus()) << key;
    }
}

TEST_F(TreeViewEditingTests, AStringIsEditedWithoutItsQuotationMarks) {
    open(R"({"a":"a"})");
    doubleClickRow(1);
    ASSERT_TRUE(hasFieldFocus());
    EXPECT_EQ(fieldText(), QStringLiteral("a"));
}

TEST_F(TreeViewEditingTests, ALongStringIsEditedWhole) {
    const std::string value(5000, 'v');
    open("[\"" + value + "\"]");
    doubleClickRow(1);
    EXPECT_EQ(field().text().view(), value);
}

TEST_F(TreeViewEditingTests, AContainerAndANullAreRenamed) {
    open(R"({"a":{},"b":null})");
    for (const int row : {1, 2}) {
        clickRow(row);
        press(Qt::Key_Return);
        ASSERT_TRUE(hasFieldFocus());
        EXPECT_EQ(editor->editing()->field, Field::key);
        pressInField(Qt::Key_Escape);
    }
}

TEST_F(TreeViewEditingTests, WhatHasNothingToEditOpensNoField) {
    open(R"([[],null])");
    for (const int row : {0, 1, 2}) {
        clickRow(row);
        press(Qt::Key_Return);
        EXPECT_FALSE(isEditing()) << row;
        doubleClickRow(row);
        EXPECT_FALSE(isEditing()) << row;
    }
}

TEST_F(TreeViewEditingTests, ADoubleClickTogglesABoolean) {
    open(R"([true])");
    doubleClickRow(1);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(json(), "[false]");
    undoManager->undo();
    EXPECT_EQ(json(), "[true]");
}

TEST_F(TreeViewEditingTests, EscapeLeavesTheValueAsItWas) {
    open("[1]");
    doubleClickRow(1);
    enter(QStringLiteral("7"));
    pressInField(Qt::Key_Escape);
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(json(), "[1]");
    EXPECT_FALSE(undoManager->canUndo());
}

TEST_F(TreeViewEditingTests, AValueThatIsNotValidIsDropped) {
    open("[1]");
    doubleClickRow(1);
    enter(QStringLiteral("12a"));
    pressInField(Qt::Key_Return);
    EXPECT_FALSE(isEditing());
    EXPECT_FALSE(editor->editing());
    EXPECT_EQ(json(), "[1]");
}

TEST_F(TreeViewEditingTests, AFieldThatIsDoneIsDeletedLater) {
    open("[1]");
    doubleClickRow(1);
    const QPointer<InlineField> former = &field();
    pressInField(Qt::Key_Return);
    ASSERT_FALSE(former.isNull());
    EXPECT_FALSE(former->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(former.isNull());
}

// Tab.

TEST_F(TreeViewEditingTests, TabGoesFromTheKeyToTheValueAndCommitsBoth) {
    open(R"({"a":"x"})");
    clickRow(1);
    editor->activate(Field::key);
    enter(QStringLiteral("nombre"));
    pressInField(Qt::Key_Tab);
    ASSERT_TRUE(hasFieldFocus());
    EXPECT_EQ(editor->editing()->field, Field::value);
    EXPECT_EQ(fieldText(), QStringLiteral("x"));
    enter(QStringLiteral("y"));
    pressInField(Qt::Key_Return);
    EXPECT_EQ(json(), R"({"nombre":"y"})");
}

TEST_F(TreeViewEditingTests, TabInAContainersKeyCommitsItAndLeavesNothingOpen) {
    open(R"({"a":[1]})");
    clickRow(1);
    press(Qt::Key_Return);
    enter(QStringLiteral("b"));
    pressInField(Qt::Key_Tab);
    EXPECT_FALSE(isEditing());
    EXPECT_FALSE(editor->editing());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(json(), R"({"b":[1]})");
    press(Qt::Key_Return);
    EXPECT_TRUE(hasFieldFocus());
}

TEST_F(TreeViewEditingTests, TabInABooleansKeyTogglesIt) {
    open(R"({"a":true})");
    clickRow(1);
    editor->activate(Field::key);
    pressInField(Qt::Key_Tab);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(json(), R"({"a":false})");
}

TEST_F(TreeViewEditingTests, AnInsertedMemberIsNamedThenGivenItsValue) {
    open(R"({"a":1})");
    clickRow(1);
    editor->insert(false);
    ASSERT_TRUE(hasFieldFocus());
    EXPECT_EQ(fieldText(), QStringLiteral("clave"));
    type(QStringLiteral("b"));
    pressInField(Qt::Key_Tab);
    type(QStringLiteral("v"));
    pressInField(Qt::Key_Return);
    EXPECT_EQ(json(), R"({"a":1,"b":"v"})");
}

// Losing the field.

TEST_F(TreeViewEditingTests, AClickElsewhereInTheTreeCommitsAndSelects) {
    open("[1,2,3]");
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    clickRow(3);
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(selectedRow(), 3);
    EXPECT_EQ(json(), "[10,2,3]");
}

TEST_F(TreeViewEditingTests, AClickBelowTheRowsCommits) {
    open("[1]");
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(50, view->viewport()->height() - 5));
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(json(), "[10]");
}

TEST_F(TreeViewEditingTests, AClickIntoAnotherWidgetCommitsAndLeavesTheFocusThere) {
    open("[1]");
    auto* other = new QLineEdit;
    window->layout()->addWidget(other);
    QCoreApplication::processEvents();
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    QTest::mouseClick(other, Qt::LeftButton);
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(other->hasFocus());
    EXPECT_EQ(json(), "[10]");
}

TEST_F(TreeViewEditingTests, AnotherOperationFirstCommitsTheField) {
    open("[1,2]");
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    editor->duplicate();
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(json(), "[10,10,2]");
}

TEST_F(TreeViewEditingTests, AReloadDropsTheFieldAndKeepsTheSelection) {
    open("[1,2]");
    doubleClickRow(2);
    enter(QStringLiteral("10"));
    replace("[3,4]");
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_EQ(json(), "[3,4]");
}

TEST_F(TreeViewEditingTests, HidingTheRowByACollapseCommits) {
    open("[[1]]");
    clickChevron(1);
    doubleClickRow(2);
    enter(QStringLiteral("10"));
    editor->setAllExpanded(false);
    EXPECT_FALSE(isEditing());
    EXPECT_FALSE(editor->editing());
    EXPECT_EQ(json(), "[[10]]");
}

TEST_F(TreeViewEditingTests, CollapsingByItsChevronCommitsFirst) {
    open("[[1]]");
    clickChevron(1);
    doubleClickRow(2);
    enter(QStringLiteral("10"));
    clickChevron(1);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(rowCount(), 2);
    EXPECT_EQ(json(), "[[10]]");
}

TEST_F(TreeViewEditingTests, CollapsingEverythingCommitsFirst) {
    open("[[1]]");
    clickChevron(1);
    doubleClickRow(2);
    enter(QStringLiteral("10"));
    editor->setAllExpanded(false);
    EXPECT_EQ(rowCount(), 2);
    EXPECT_EQ(json(), "[[10]]");
}

TEST_F(TreeViewEditingTests, OpeningAnotherFieldCommitsTheOpenOne) {
    open("[1,2]");
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    editor->select(editor->outline().rowID(2));
    editor->activate();
    EXPECT_EQ(json(), "[10,2]");
    ASSERT_TRUE(hasFieldFocus());
    EXPECT_EQ(fieldText(), QStringLiteral("2"));
}

TEST_F(TreeViewEditingTests, ShiftTabGoesFromTheValueOfAMemberToItsKey) {
    open(R"({"a":1})");
    doubleClickRow(1);
    enter(QStringLiteral("2"));
    pressInField(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(json(), R"({"a":2})");
    ASSERT_TRUE(hasFieldFocus());
    EXPECT_EQ(editor->editing()->field, Field::key);
    EXPECT_EQ(fieldText(), QStringLiteral("a"));
}

TEST_F(TreeViewEditingTests, TypingScrollsBackToTheField) {
    open(arrayOfZeros(1000));
    doubleClickRow(1);
    view->verticalAxis().setPosition(5000);
    ASSERT_FALSE(isWhollyVisible(1));
    enter(QStringLiteral("1"));
    EXPECT_TRUE(isWhollyVisible(1));
}

TEST_F(TreeViewEditingTests, AFieldIsNoHigherThanTheViewport) {
    open("[\"" + std::string(5000, 'v') + "\"]");
    doubleClickRow(1);
    window->resize(400, 90);
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
}

TEST_F(TreeViewEditingTests, AClickOnAnotherRowFindsItWhereItWasClicked) {
    open(arrayOfZeros(1000));
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    view->verticalAxis().setPosition(5000);
    const QPoint place(view->viewport()->width() / 2, view->viewport()->height() / 2);
    const std::int64_t clicked = view->rowAt(place).value();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(editor->tree()->scalar(editor->outline().rowID(1)), "10");
    EXPECT_EQ(selectedRow(), clicked);
    EXPECT_EQ(view->verticalAxis().position(), 5000);
}

TEST_F(TreeViewEditingTests, ADoubleClickOnTheRestOfTheLastRowEditsIt) {
    open(arrayOfZeros(1000));
    view->verticalAxis().setPosition(view->verticalAxis().maximum());
    view->verticalAxis().scrollBy(-view->rowStyle().rowHeight - view->rowStyle().verticalMargin + 3);
    // The first click scrolls the row up, and leaves the pointer below it.
    const QPoint place(view->viewport()->width() / 2, view->viewport()->height() - 2);
    ASSERT_EQ(view->rowAt(place), 1000);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(selectedRow(), 1000);
    EXPECT_TRUE(hasFieldFocus());
}

TEST_F(TreeViewEditingTests, UndoingTheInsertionOfTheRowTakesTheFieldAway) {
    open(R"({"a":1})");
    editor->insert(true);
    ASSERT_TRUE(isEditing());
    undoManager->undo();
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(json(), R"({"a":1})");
}

TEST_F(TreeViewEditingTests, AViewThatGoesCancelsTheField) {
    open("[1]");
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    delete view;
    EXPECT_FALSE(editor->editing());
    EXPECT_EQ(json(), "[1]");
}

TEST_F(TreeViewEditingTests, AViewShowsWhatIsBeingEditedAlready) {
    open("[1]");
    delete view;
    editor->select(editor->outline().rowID(1));
    editor->activate();
    view = new TreeView(*editor);
    window->layout()->addWidget(view);
    view->show();
    EXPECT_TRUE(hasFieldFocus());
}

TEST_F(TreeViewEditingTests, FinishingWithoutAFieldDoesNothing) {
    open("[1]");
    view->finishEditing();
    EXPECT_FALSE(isEditing());
}

// Its place.

TEST_F(TreeViewEditingTests, AFieldStandsOverWhatItEdits) {
    open(R"({"clave":"valor","b":2})");
    const QRectF key = view->partArea(1, TreeRowPart::label);
    const QRectF value = view->partArea(1, TreeRowPart::value);
    const QRect row = *view->rowArea(1);
    clickRow(1);
    editor->activate(Field::key);
    EXPECT_TRUE(fieldArea().contains(key.center().toPoint()));
    EXPECT_GE(fieldArea().width(), scaledPixels(120));
    EXPECT_LE(std::abs(fieldArea().center().y() - row.center().y()), 1);
    EXPECT_LE(fieldArea().height(), row.height());
    EXPECT_GE(view->partArea(1, TreeRowPart::value).left(), fieldArea().right()) << "the value makes room";
    pressInField(Qt::Key_Tab);
    EXPECT_TRUE(fieldArea().contains(value.center().toPoint()));
    EXPECT_EQ(view->partArea(1, TreeRowPart::label), key);
}

TEST_F(TreeViewEditingTests, TheTextOfAFieldIsWhereItWasShown) {
    open(R"({"clave":"valor"})");
    const double key = view->partArea(1, TreeRowPart::label).left();
    const double value = view->partArea(1, TreeRowPart::value).left();
    clickRow(1);
    editor->activate(Field::key);
    EXPECT_NEAR(fieldArea().left() + field().textOrigin().x(), key, 1);
    pressInField(Qt::Key_Tab);
    const double mark = view->rowStyle().value.metrics.horizontalAdvance(u'"');
    EXPECT_NEAR(fieldArea().left() + field().textOrigin().x(), value + mark, 1);
}

TEST_F(TreeViewEditingTests, AFieldFollowsItsRowOnScrollingAlsoOutOfTheViewport) {
    open(arrayOfZeros(1000));
    clickRow(5);
    press(Qt::Key_F2);
    const int top = fieldArea().top();
    view->verticalAxis().setPosition(40);
    EXPECT_EQ(fieldArea().top(), top - 40);
    view->verticalAxis().setPosition(2000);
    EXPECT_FALSE(view->viewport()->rect().intersects(fieldArea()));
    view->verticalAxis().setPosition(view->verticalAxis().maximum());
    EXPECT_FALSE(view->viewport()->rect().intersects(fieldArea()));
    EXPECT_TRUE(hasFieldFocus());
    view->verticalAxis().setPosition(0);
    EXPECT_EQ(fieldArea().top(), top);
}

TEST_F(TreeViewEditingTests, AFieldFollowsItsRowOnScrollingSideways) {
    open(nestedArrays(200));
    press(Qt::Key_Right, Qt::AltModifier);
    press(Qt::Key_End);
    press(Qt::Key_Return);
    ASSERT_TRUE(isEditing());
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
    const int left = fieldArea().left();
    view->horizontalAxis().scrollBy(-30);
    EXPECT_EQ(fieldArea().left(), left + 30);
}

TEST_F(TreeViewEditingTests, AFieldFollowsItsRowWhenOthersComeAndGo) {
    open("[[1,2],3]");
    clickRow(2);
    press(Qt::Key_F2);
    const int top = fieldArea().top();
    editor->toggleExpansion(editor->outline().rowID(1), false);
    ASSERT_TRUE(isEditing());
    EXPECT_EQ(fieldArea().top(), top + 2 * view->rowStyle().rowHeight);
}

TEST_F(TreeViewEditingTests, ARowOutOfSightIsScrolledToWhenItIsEdited) {
    open(arrayOfZeros(1000));
    clickRow(5);
    view->verticalAxis().setPosition(8000);
    press(Qt::Key_F2);
    EXPECT_TRUE(isWhollyVisible(5));
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
}

TEST_F(TreeViewEditingTests, AStringGrowsDownOverTheRowsBelow) {
    open(R"(["a",1,2,3,4,5,6,7,8,9])");
    clickRow(1);
    press(Qt::Key_F2);
    const QRect before = fieldArea();
    enter(QString(400, u'x'));
    EXPECT_GT(fieldArea().height(), 2 * before.height());
    EXPECT_EQ(fieldArea().top(), before.top());
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
}

TEST_F(TreeViewEditingTests, AStringAtTheBottomEdgeGrowsUp) {
    std::string zeros = arrayOfZeros(1000);
    zeros.pop_back();
    open(zeros + ",\"a\"]");
    press(Qt::Key_End);
    press(Qt::Key_F2);
    enter(QString(400, u'x'));
    EXPECT_GT(fieldArea().height(), 2 * view->rowStyle().rowHeight);
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
}

TEST_F(TreeViewEditingTests, AFieldKeepsItsLeastWidthBesideALongKey) {
    open("{\"" + std::string(300, 'k') + "\":\"v\"}");
    clickRow(1);
    press(Qt::Key_F2);
    EXPECT_GE(fieldArea().width(), scaledPixels(120));
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
    window->resize(scaledPixels(260), 300);
    QCoreApplication::processEvents();
    EXPECT_GE(fieldArea().width(), scaledPixels(120));
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
}

TEST_F(TreeViewEditingTests, AFieldIsNeverWiderThanTheWindowLeaves) {
    open("[\"" + std::string(300, 'v') + "\"]");
    clickRow(1);
    press(Qt::Key_F2);
    const int wide = fieldArea().width();
    window->resize(scaledPixels(400), 300);
    QCoreApplication::processEvents();
    EXPECT_LT(fieldArea().width(), wide);
    EXPECT_TRUE(view->viewport()->rect().contains(fieldArea()));
}

TEST_F(TreeViewEditingTests, AChevronThatAnEditTurnsIsTurnedAtOnce) {
    open(R"({"a":{"b":1}})");
    const auto chevronImage = [this] {
        return painted().copy(view->partArea(1, TreeRowPart::chevron).toAlignedRect());
    };
    const NodeID container = editor->outline().rowID(1);
    editor->toggleExpansion(container, false);
    clickRow(2);
    const QImage turned = chevronImage();
    editor->toggleExpansion(container, false);
    EXPECT_NE(chevronImage(), turned);
    clickRow(1);
    editor->insert(true);
    EXPECT_EQ(chevronImage(), turned);
}

// What it is called.

TEST_F(TreeViewEditingTests, AFieldSaysWhatItEdits) {
    open(R"({"precio":1,"lista":["x"]})");
    const auto name = [this](std::int64_t row, Field what) {
        clickRow(row);
        editor->activate(what);
        const QString text = field().textView().accessibleName();
        pressInField(Qt::Key_Escape);
        return text;
    };
    EXPECT_EQ(name(1, Field::key), QStringLiteral("Clave"));
    EXPECT_EQ(name(1, Field::value), QStringLiteral("Valor de precio"));
    clickChevron(2);
    EXPECT_EQ(name(3, Field::value), QStringLiteral("Valor de [0]"));
    replace("7");
    EXPECT_EQ(name(0, Field::value), QStringLiteral("Valor de la raíz"));
}

} // namespace
} // namespace quelm
