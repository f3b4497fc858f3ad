#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Tests/Quelm/TreeEditor/TreeViewAccessibleTest.h"

#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using testing::ElementsAre;

const QString toggle = QAccessibleActionInterface::toggleAction();
const QString edit = QAccessibleActionInterface::pressAction();
const QString select = QAccessibleActionInterface::setFocusAction();
const QString menu = QAccessibleActionInterface::showMenuAction();

class TreeViewAccessibleRowTests : public TreeViewAccessibleTest {
protected:
    QString value(int index) const {
        return QString::fromStdString(editor->outline().row(index, *editor->tree()).value);
    }
};

// Names.

TEST_F(TreeViewAccessibleRowTests, ANameSaysLabelKindAndValue) {
    open(R"({"nombre":"Ana","edad":36,"alta":true,"nada":null,"hijos":[{"a":1}],"vacío":{},"":""})");
    EXPECT_THAT(names(), ElementsAre(u"raíz, Objeto, 7 claves", u"nombre, Texto, \"Ana\"", u"edad, Número, 36",
                                     u"alta, Booleano, true", u"nada, Nulo", u"hijos, Arreglo, 1 elemento",
                                     u"vacío, Objeto, 0 claves", u"clave vacía, Texto, \"\""));
}

TEST_F(TreeViewAccessibleRowTests, AnElementIsNamedByItsPosition) {
    open("[12,[]]");
    EXPECT_THAT(names(), ElementsAre(u"raíz, Arreglo, 2 elementos", u"0, Número, 12", u"1, Arreglo, 0 elementos"));
}

TEST_F(TreeViewAccessibleRowTests, ADuplicateKeyIsSaidBeforeTheValue) {
    open(R"({"a":1,"b":2,"a":3})");
    EXPECT_EQ(name(1), u"a, Clave duplicada, Número, 1");
    EXPECT_EQ(name(2), u"b, Número, 2");
    EXPECT_EQ(name(3), u"a, Clave duplicada, Número, 3");
}

TEST_F(TreeViewAccessibleRowTests, OfALongKeyOrValueTheBeginningIsSaid) {
    open("{\"" + std::string(1'000'000, 'k') + "\":\"" + std::string(1'000'000, 'v') + "\"}");
    EXPECT_TRUE(name(1).startsWith(QStringLiteral("kkk")));
    EXPECT_TRUE(name(1).contains(QStringLiteral("k…, Texto, \"vvv")));
    EXPECT_TRUE(name(1).endsWith(QStringLiteral("vvv…\"")));
    EXPECT_LT(name(1).size(), 500);
}

TEST_F(TreeViewAccessibleRowTests, WhatIsUnseenIsSaidAsItIsPainted) {
    open(R"({"a\nb":"c\td"})");
    EXPECT_EQ(name(1), u"a⏎b, Texto, \"c⇥d\"");
}

TEST_F(TreeViewAccessibleRowTests, TheDescriptionSaysTheLevel) {
    open("[[1]]");
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(row(0).text(QAccessible::Description), u"nivel 1");
    EXPECT_EQ(row(2).text(QAccessible::Description), u"nivel 3");
    EXPECT_EQ(row(2).text(QAccessible::Help), QString());
}

// States.

TEST_F(TreeViewAccessibleRowTests, TheSelectedRowIsFocusedWhileItsViewIs) {
    open("[1,2]");
    press(Qt::Key_Down);
    EXPECT_TRUE(state(1).selectable);
    EXPECT_TRUE(state(1).focusable);
    EXPECT_TRUE(state(1).selected);
    EXPECT_TRUE(state(1).focused);
    EXPECT_FALSE(state(2).selected);
    EXPECT_FALSE(state(2).focused);
    view->clearFocus();
    EXPECT_TRUE(state(1).selected);
    EXPECT_FALSE(state(1).focused);
}

TEST_F(TreeViewAccessibleRowTests, OnlyContainersAreExpandedOrCollapsed) {
    open("[[1],2]");
    EXPECT_TRUE(state(0).expandable);
    EXPECT_TRUE(state(0).expanded);
    EXPECT_FALSE(state(0).collapsed);
    EXPECT_TRUE(state(1).expandable);
    EXPECT_TRUE(state(1).collapsed);
    EXPECT_FALSE(state(2).expandable);
    EXPECT_FALSE(state(2).expanded);
    EXPECT_FALSE(state(2).collapsed);

    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_TRUE(state(1).expanded);
    EXPECT_FALSE(state(1).collapsed);
    press(Qt::Key_Left);
    EXPECT_FALSE(state(1).expanded);
    EXPECT_TRUE(state(1).collapsed);
}

TEST_F(TreeViewAccessibleRowTests, ARowIsEditableWhenItsKeyOrValueIs) {
    open("{\"a\":[],\"b\":[{},1,null]}");
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_FALSE(state(0).editable);
    EXPECT_TRUE(state(1).editable);
    EXPECT_FALSE(state(3).editable);
    EXPECT_TRUE(state(4).editable);
    EXPECT_FALSE(state(5).editable);
}

// Actions.

TEST_F(TreeViewAccessibleRowTests, ActionsAreThoseThatApply) {
    open("{\"a\":[null],\"b\":1}");
    EXPECT_THAT(actions(0).actionNames(), ElementsAre(toggle, select, menu));
    EXPECT_THAT(actions(1).actionNames(), ElementsAre(toggle, edit, select, menu));
    EXPECT_THAT(actions(2).actionNames(), ElementsAre(edit, select, menu));
    EXPECT_EQ(actions(0).localizedActionName(toggle), u"Colapsar");
    EXPECT_EQ(actions(1).localizedActionName(toggle), u"Expandir");
    EXPECT_EQ(actions(2).localizedActionName(edit), u"Editar");
    EXPECT_EQ(actions(2).localizedActionName(select), u"Seleccionar");
    EXPECT_EQ(actions(2).localizedActionName(menu), u"Mostrar el menú");
    for (const QString& action : {toggle, edit, select, menu})
        EXPECT_FALSE(actions(1).localizedActionDescription(action).isEmpty());
    EXPECT_EQ(actions(2).keyBindingsForAction(edit).size(), 1);
    EXPECT_NE(actions(0).keyBindingsForAction(toggle), actions(1).keyBindingsForAction(toggle));
}

TEST_F(TreeViewAccessibleRowTests, TogglingExpandsAndCollapses) {
    open("[[1,2],3]");
    actions(1).doAction(toggle);
    EXPECT_EQ(rowCount(), 5);
    actions(1).doAction(toggle);
    EXPECT_EQ(rowCount(), 3);
    actions(2).doAction(toggle);
    EXPECT_EQ(rowCount(), 3) << "a number has nothing to show";
}

TEST_F(TreeViewAccessibleRowTests, SelectingSelectsAndTakesTheFocus) {
    open("[1,2]");
    view->clearFocus();
    actions(2).doAction(select);
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_TRUE(view->hasFocus());
}

TEST_F(TreeViewAccessibleRowTests, EditingABooleanTogglesIt) {
    open("[true,1]");
    UndoManager undoManager;
    editor->setUndoManager(&undoManager);
    actions(1).doAction(edit);
    EXPECT_EQ(value(1), u"false");
    EXPECT_EQ(name(1), u"0, Booleano, false");
    undoManager.undo();
    EXPECT_EQ(name(1), u"0, Booleano, true");
}

TEST_F(TreeViewAccessibleRowTests, ActionsOfALongTreeEndWellWhenTheirRowIsForgotten) {
    open(arrayOfZeros(2'000));
    const QObject context;
    bool isDone = false;
    QObject::connect(editor.get(), &TreeEditor::selectionChanged, &context, [this, &isDone] {
        for (int index = 100; index < 1'000; ++index)
            whole().child(index);
        isDone = true;
    });
    actions(1).doAction(edit);
    EXPECT_TRUE(isDone);
    EXPECT_EQ(selectedRow(), 1);
}

TEST_F(TreeViewAccessibleRowTests, TheMenuIsShownForItsRow) {
    open("[1,2]");
    actions(2).doAction(menu);
    EXPECT_EQ(selectedRow(), 2);
    ASSERT_NE(view->openMenu(), nullptr);
    view->openMenu()->close();
}

// The field.

TEST_F(TreeViewAccessibleRowTests, TheFieldIsPartOfTheRowThatIsEdited) {
    open("{\"a\":\"uno\",\"b\":2}");
    actions(1).doAction(edit);
    ASSERT_NE(view->inlineField(), nullptr);
    QAccessibleInterface* field = QAccessible::queryAccessibleInterface(view->inlineField());
    ASSERT_EQ(row(1).childCount(), 1);
    EXPECT_EQ(row(1).child(0), field);
    EXPECT_EQ(row(1).indexOfChild(field), 0);
    EXPECT_EQ(row(2).childCount(), 0);
    EXPECT_EQ(row(2).indexOfChild(field), -1);
    EXPECT_EQ(field->parent(), &row(1));
    EXPECT_FALSE(field->text(QAccessible::Name).isEmpty());

    const QAccessibleInterface* text = QAccessible::queryAccessibleInterface(&view->inlineField()->textView());
    ASSERT_EQ(field->childCount(), 1);
    EXPECT_EQ(field->child(0), text);
    EXPECT_EQ(text->role(), QAccessible::EditableText);
    EXPECT_EQ(text->text(QAccessible::Value), u"uno");
    EXPECT_EQ(text->parent(), field);
    EXPECT_EQ(whole().focusChild(), text);
}

TEST_F(TreeViewAccessibleRowTests, TheFieldIsFoundWhereItIs) {
    open("{\"a\":\"uno\",\"b\":2}");
    actions(1).doAction(edit);
    ASSERT_NE(view->inlineField(), nullptr);
    const InlineField& field = *view->inlineField();
    const QPoint place = field.mapToGlobal(field.rect().center());
    EXPECT_EQ(whole().childAt(place.x(), place.y()), &row(1));
    EXPECT_EQ(row(1).childAt(place.x(), place.y()), row(1).child(0));
    EXPECT_EQ(row(1).childAt(row(1).rect().left(), row(1).rect().top()), nullptr);
}

TEST_F(TreeViewAccessibleRowTests, AFieldThatIsDoneIsNoPartOfTheTree) {
    open("{\"a\":\"uno\",\"b\":2}");
    actions(1).doAction(edit);
    ASSERT_NE(view->inlineField(), nullptr);
    QTest::keyClick(&view->inlineField()->textView(), Qt::Key_Escape);
    EXPECT_EQ(row(1).childCount(), 0);
    EXPECT_EQ(row(1).child(0), nullptr);
}

} // namespace
} // namespace quelm
