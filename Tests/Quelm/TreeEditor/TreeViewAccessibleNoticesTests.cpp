#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/TreeViewAccessibleNotices.h"
#include "Tests/Quelm/TreeEditor/TreeViewAccessibleTest.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QString shown(QAccessibleEvent& event) {
    switch (event.type()) {
    case QAccessible::Focus:
        return QStringLiteral("focus %1").arg(event.child());
    case QAccessible::Selection:
        return QStringLiteral("selected %1").arg(event.child());
    case QAccessible::SelectionRemove:
        return QStringLiteral("deselected %1").arg(event.child());
    case QAccessible::NameChanged:
        return QStringLiteral("%1 is called %2")
            .arg(event.child())
            .arg(event.accessibleInterface()->text(QAccessible::Name));
    case QAccessible::StateChanged: {
        const QAccessible::State changed = static_cast<QAccessibleStateChangeEvent&>(event).changedStates();
        const QAccessible::State now = event.accessibleInterface()->state();
        return QStringLiteral("%1 is %2")
            .arg(event.child())
            .arg(!changed.expanded ? QStringLiteral("something else")
                                   : QLatin1String(now.expanded ? "expanded" : "collapsed"));
    }
    case QAccessible::TableModelChanged:
        return QStringLiteral("rows");
    default:
        return QStringLiteral("event %1").arg(event.type());
    }
}

/// Takes what is announced of the view, an event a string.
class TreeViewAccessibleNoticesTests : public TreeViewAccessibleTest {
protected:
    void start(std::string_view text) {
        open(text);
        editor->setUndoManager(&undoManager);
        new TreeViewAccessibleNotices(*view, {[this] { return isListening; },
                                              [this](QAccessibleEvent& event) {
                                                  EXPECT_EQ(event.object(), view);
                                                  announced.append(shown(event));
                                                  whenTold();
                                              }});
        // What is announced of it depends on what was before.
        editor->setAllExpanded(false);
        ask();
        announced.clear();
    }

    /// Asks for all rows, as a screen reader does for those in sight.
    void ask() { names(); }
    QStringList take() { return std::exchange(announced, {}); }

    UndoManager undoManager;
    bool isListening = true;
    std::function<void()> whenTold = [] {};
    QStringList announced;
};

TEST_F(TreeViewAccessibleNoticesTests, AMovedSelectionIsAnnouncedWithTheFocus) {
    start("[1,2]");
    press(Qt::Key_Down);
    EXPECT_THAT(take(), ElementsAre(u"deselected 0", u"selected 1", u"focus 1"));
    clickRow(2);
    EXPECT_THAT(take(), ElementsAre(u"deselected 1", u"selected 2", u"focus 2"));
    press(Qt::Key_Down);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(TreeViewAccessibleNoticesTests, WithoutTheFocusOnlyTheSelectionIsAnnounced) {
    start("[1,2]");
    view->clearFocus();
    take();
    editor->select(editor->outline().rowID(2));
    EXPECT_THAT(take(), ElementsAre(u"deselected 0", u"selected 2"));
}

TEST_F(TreeViewAccessibleNoticesTests, TheFocusOfTheViewGoesToItsSelectedRowAfterQtHasAnnouncedIt) {
    start("[1,2]");
    press(Qt::Key_Down);
    view->clearFocus();
    take();
    view->setFocus();
    EXPECT_THAT(take(), IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_THAT(take(), ElementsAre(u"focus 1"));
}

TEST_F(TreeViewAccessibleNoticesTests, ExpandingAndCollapsingAreAnnounced) {
    start("[[1],2]");
    press(Qt::Key_Down);
    take();
    press(Qt::Key_Right);
    EXPECT_THAT(take(), ElementsAre(u"rows", u"1 is expanded"));
    press(Qt::Key_Left);
    EXPECT_THAT(take(), ElementsAre(u"rows", u"1 is collapsed"));
    clickChevron(1);
    EXPECT_THAT(take(), ElementsAre(u"rows", u"1 is expanded"));
}

TEST_F(TreeViewAccessibleNoticesTests, OfAnEmptyContainerOnlyTheStateChanges) {
    start("[[],2]");
    clickChevron(1);
    EXPECT_THAT(take(), ElementsAre(u"1 is expanded"));
}

TEST_F(TreeViewAccessibleNoticesTests, ANewValueIsANewName) {
    start("[true,2]");
    editor->select(editor->outline().rowID(1));
    take();
    editor->activate();
    EXPECT_THAT(take(), ElementsAre(u"1 is called 0, Booleano, false"));
    undoManager.undo();
    EXPECT_THAT(take(), ElementsAre(u"1 is called 0, Booleano, true"));
}

TEST_F(TreeViewAccessibleNoticesTests, ARenamingThatDuplicatesAKeyIsANewNameOfBoth) {
    start(R"({"a":1,"b":2})");
    const NodeID id = editor->outline().rowID(2);
    editor->select(id);
    editor->activate(TreeEditor::Field::key);
    take();
    editor->commit(SharedText(std::string_view("a")), {id, TreeEditor::Field::key});
    const QStringList announced = take();
    EXPECT_TRUE(announced.contains(u"1 is called a, Clave duplicada, Número, 1"));
    EXPECT_TRUE(announced.contains(u"2 is called a, Clave duplicada, Número, 2"));
    EXPECT_FALSE(announced.contains(u"rows"));
}

TEST_F(TreeViewAccessibleNoticesTests, RowsThatComeAndGoAreAnnounced) {
    start("[10,20]");
    press(Qt::Key_Down);
    take();
    editor->duplicate();
    QStringList announced = take();
    ASSERT_FALSE(announced.isEmpty());
    EXPECT_EQ(announced.front(), u"rows");
    EXPECT_TRUE(announced.contains(u"0 is called raíz, Arreglo, 3 elementos"));
    EXPECT_TRUE(announced.contains(u"3 is called 2, Número, 20"));
    EXPECT_TRUE(announced.contains(u"selected 2"));
    EXPECT_EQ(announced.back(), u"focus 2");

    undoManager.undo();
    announced = take();
    EXPECT_EQ(announced.front(), u"rows");
    EXPECT_TRUE(announced.contains(u"2 is called 1, Número, 20"));
}

TEST_F(TreeViewAccessibleNoticesTests, RowsThatChangePlacesAreAnnounced) {
    start(R"({"a":1,"b":2})");
    press(Qt::Key_Down);
    take();
    editor->move(1);
    EXPECT_THAT(take(), ElementsAre(u"rows"));
}

TEST_F(TreeViewAccessibleNoticesTests, ASelectionThatGoesOutOfSightLeavesTheFocusToTheView) {
    start("[[1]]");
    editor->select(editor->tree()->children(editor->outline().rowID(1))[0]);
    EXPECT_EQ(take().back(), u"focus -1");
    editor->toggleExpansion(editor->outline().rowID(1), false);
    EXPECT_EQ(take().back(), u"focus 2");
}

TEST_F(TreeViewAccessibleNoticesTests, AnotherContentIsAnnouncedAsOther) {
    start("[1,2]");
    replace("[1,3]");
    EXPECT_THAT(take(), ElementsAre(u"rows", u"selected 0", u"focus 0"));
}

TEST_F(TreeViewAccessibleNoticesTests, OfRowsThatNobodyHasAskedForNothingIsAnnounced) {
    start("[[1],[2],3]");
    replace("[[1],[2],3]");
    take();
    clickChevron(1);
    EXPECT_THAT(take(), ElementsAre(u"rows"));
}

TEST_F(TreeViewAccessibleNoticesTests, WhoIsToldMayAskForManyOtherRows) {
    start(arrayOfZeros(3'000));
    ask();
    whenTold = [this] {
        for (int index = 0; index < 600; ++index)
            whole().child(index);
    };
    clickRow(1);
    editor->remove();
    EXPECT_GT(take().size(), 200);
    EXPECT_LE(tree().knownRows().size(), TreeRowAccessibleCache::mostRows);
}

TEST_F(TreeViewAccessibleNoticesTests, NothingIsAnnouncedWhileNobodyListens) {
    start("[[1],2]");
    isListening = false;
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    editor->duplicate();
    view->clearFocus();
    view->setFocus();
    QCoreApplication::processEvents();
    EXPECT_THAT(take(), IsEmpty());
}

} // namespace
} // namespace quelm
