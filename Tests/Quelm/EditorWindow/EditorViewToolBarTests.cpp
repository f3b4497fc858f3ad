#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QToolButton>

namespace quelm {
namespace {

class EditorViewToolBarTests : public EditorViewTest {
protected:
    QToolButton* exportButton() const { return qobject_cast<QToolButton*>(button(QStringLiteral("Exportar"))); }
    QMenu& openExportMenu() {
        click(exportButton());
        return *exportButton()->menu();
    }
    static QAction* itemOf(const QMenu& menu, const QString& title) {
        for (QAction* action : menu.actions())
            if (action->text() == title)
                return action;
        return nullptr;
    }
};

TEST_F(EditorViewToolBarTests, ItHasThePickerTwoButtonsAndAMenuInThisOrder) {
    show("[1]");
    QStringList titles;
    for (QAction* action : window->toolBar().actions())
        if (const auto* item = qobject_cast<QToolButton*>(window->toolBar().widgetForAction(action)))
            titles.append(item->text());
    EXPECT_EQ(titles,
              QStringList({QStringLiteral("Embellecer"), QStringLiteral("Compactar"), QStringLiteral("Exportar")}));
    EXPECT_EQ(window->modePicker().accessibleName(), QStringLiteral("Modo"));
    EXPECT_LT(window->modePicker().x(), button(titles[0])->x());
    EXPECT_EQ(button(QStringLiteral("Compactar"))->toolTip(), QStringLiteral("Todo en una línea, sin espacios"));
    for (const QString& title : titles)
        EXPECT_FALSE(button(title)->toolTip().isEmpty());
}

TEST_F(EditorViewToolBarTests, ItCannotBeMovedOrHidden) {
    show("[1]");
    EXPECT_FALSE(window->toolBar().isMovable());
    EXPECT_FALSE(window->toolBar().toggleViewAction()->isVisible());
}

TEST_F(EditorViewToolBarTests, ClickingASegmentShowsTheDocumentSoAndKeepsWhetherItIsModified) {
    const std::string bytes = "{ \"a\" :1,\r\n\"b\":[ ] }\n";
    show(bytes);
    activate();
    click(segment(QStringLiteral("Texto")));
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(text(), nullptr);
    EXPECT_EQ(window->modePicker().mode(), EditorMode::text);
    EXPECT_TRUE(segment(QStringLiteral("Texto"))->isChecked());
    EXPECT_TRUE(textView().hasFocus());
    EXPECT_EQ(savedText(), bytes);

    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(tree(), nullptr);
    EXPECT_TRUE(tree()->hasFocus());
    EXPECT_EQ(window->modePicker().mode(), EditorMode::tree);
    EXPECT_EQ(savedText(), bytes);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(window->undoManager().canUndo());
}

TEST_F(EditorViewToolBarTests, WhatWasChangedStaysModifiedThroughASwitchAndCannotBeUndone) {
    showAsText("[1]");
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    EXPECT_NE(tree(), nullptr);
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_FALSE(window->undoManager().canUndo());
    EXPECT_EQ(savedText(), " [1]");
}

TEST_F(EditorViewToolBarTests, ASwitchMakesTheRowsOfTheTreeOnce) {
    showAsText("[1]");
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    const QSignalSpy rows(&window->treeEditor(), &TreeEditor::outlineChanged);
    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    QTest::qWait(0);
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 2);
    EXPECT_EQ(rows.count(), 1);
}

TEST_F(EditorViewToolBarTests, TheSegmentThatIsShownDoesNothing) {
    show("[1]");
    const QWidget* before = window->editorArea();
    click(segment(QStringLiteral("Árbol")));
    EXPECT_FALSE(window->model().isBusy());
    EXPECT_EQ(window->editorArea(), before);
}

TEST_F(EditorViewToolBarTests, KeysSwitchAndLeaveTheFocusInThePicker) {
    show("[1]");
    activate();
    segment(QStringLiteral("Árbol"))->setFocus(Qt::TabFocusReason);
    QTest::keyClick(segment(QStringLiteral("Árbol")), Qt::Key_Right);
    ASSERT_TRUE(finishOperation());
    QTest::qWait(0);
    ASSERT_NE(text(), nullptr);
    EXPECT_TRUE(segment(QStringLiteral("Texto"))->hasFocus());
    QTest::keyClick(segment(QStringLiteral("Texto")), Qt::Key_Left);
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(tree(), nullptr);
    EXPECT_TRUE(segment(QStringLiteral("Árbol"))->hasFocus());
}

TEST_F(EditorViewToolBarTests, AFieldThatIsOpenIsHandedInBeforeASwitch) {
    show("[1]");
    activate();
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    window->treeEditor().activate();
    QTest::keyClicks(&tree()->inlineField()->textView(), QStringLiteral("23"));
    click(segment(QStringLiteral("Texto")));
    ASSERT_TRUE(finishOperation());
    EXPECT_EQ(savedText(), "[23]");
    EXPECT_EQ(shownText(), QStringLiteral("[23]"));
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(EditorViewToolBarTests, WhatIsBeingComposedIsAPartOfTheTextBeforeASwitch) {
    showAsText("[]");
    textView().setSelectedRange({1, 0});
    QInputMethodEvent composition(QStringLiteral("1"), {});
    QCoreApplication::sendEvent(&textView(), &composition);
    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(tree(), nullptr);
    EXPECT_EQ(savedText(), "[1]");
}

TEST_F(EditorViewToolBarTests, EmbellecerWritesInThePreferredStyleAndCompactarOnOneLine) {
    Preferences::setIndent(JSONStyle::Indent::fourSpaces);
    Preferences::setSortsKeys(true);
    showAsText("{\"b\":1, \"a\":2}");
    click(button(QStringLiteral("Embellecer")));
    ASSERT_TRUE(finishOperation());
    const QString pretty = QStringLiteral("{\n    \"a\": 2,\n    \"b\": 1\n}");
    EXPECT_EQ(shownText().trimmed(), pretty);
    EXPECT_EQ(window->undoManager().undoActionName(), QStringLiteral("Formato"));
    EXPECT_TRUE(textView().hasFocus());

    click(button(QStringLiteral("Compactar")));
    ASSERT_TRUE(finishOperation());
    EXPECT_EQ(shownText().trimmed(), QStringLiteral("{\"b\":1,\"a\":2}"));
    window->undoManager().undo();
    EXPECT_EQ(shownText().trimmed(), pretty);
    window->undoManager().undo();
    EXPECT_EQ(shownText(), QStringLiteral("{\"b\":1, \"a\":2}"));
    EXPECT_FALSE(window->isWindowModified());
}

TEST_F(EditorViewToolBarTests, AButtonThatTheKeyboardPressesKeepsTheFocus) {
    showAsText("[1, 2]");
    QAbstractButton* compact = button(QStringLiteral("Compactar"));
    compact->setFocus(Qt::TabFocusReason);
    QTest::keyClick(compact, Qt::Key_Space);
    ASSERT_TRUE(finishOperation());
    EXPECT_EQ(shownText(), QStringLiteral("[1,2]"));
    EXPECT_TRUE(compact->hasFocus());
}

TEST_F(EditorViewToolBarTests, TheMenuExportsACopyInEitherStyle) {
    showAsText("{\"a\": [1]}");
    const QSignalSpy exported(&window->model(), &EditorModel::exportChanged);
    QMenu& menu = openExportMenu();
    ASSERT_TRUE(menu.isVisible());
    QStringList titles;
    for (const QAction* action : menu.actions())
        titles.append(action->text());
    EXPECT_EQ(titles, QStringList({QStringLiteral("JSON bonito…"), QStringLiteral("JSON compacto…")}));
    EXPECT_TRUE(menu.toolTipsVisible());
    EXPECT_EQ(itemOf(menu, titles[0])->toolTip(), QStringLiteral("Formato legible con sangría"));

    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(itemOf(menu, titles[1])).center());
    ASSERT_NE(window->model().export_(), nullptr);
    EXPECT_EQ(window->model().export_()->style(), JSONStyle::compact());
    window->model().setExport(nullptr);

    openExportMenu();
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(itemOf(menu, titles[0])).center());
    ASSERT_NE(window->model().export_(), nullptr);
    EXPECT_EQ(window->model().export_()->style(), Preferences::preferredStyle());
    EXPECT_EQ(exported.count(), 3);
}

TEST_F(EditorViewToolBarTests, KeysOpenTheMenuAndPressTheButtons) {
    showAsText("[1, 2]");
    QToolButton* exporting = exportButton();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Down}) {
        QTest::keyClick(exporting, key);
        EXPECT_TRUE(exporting->menu()->isVisible());
        QTest::keyClick(exporting->menu(), Qt::Key_Escape);
        EXPECT_FALSE(exporting->menu()->isVisible());
    }
    QTest::keyClick(button(QStringLiteral("Compactar")), Qt::Key_Return);
    ASSERT_TRUE(finishOperation());
    EXPECT_EQ(shownText(), QStringLiteral("[1,2]"));
}

TEST_F(EditorViewToolBarTests, ItsItemsCanBeUsedForTextThatIsNotJSON) {
    show("[1,");
    ASSERT_NE(text(), nullptr);
    for (const QString& title : {QStringLiteral("Embellecer"), QStringLiteral("Compactar"), QStringLiteral("Exportar")})
        EXPECT_TRUE(button(title)->isEnabled());
    EXPECT_TRUE(window->modePicker().isEnabled());
}

TEST_F(EditorViewToolBarTests, WhatDoesNotFitIsBehindTheButtonAtItsEnd) {
    show("[1]");
    window->resize(window->minimumSize());
    QTest::qWait(0);
    auto* extension = window->toolBar().findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
    ASSERT_NE(extension, nullptr);
    EXPECT_EQ(extension->isVisible(), !button(QStringLiteral("Exportar"))->isVisible());
    EXPECT_TRUE(window->modePicker().isVisible());
    EXPECT_LE(window->minimumSizeHint().width(), window->minimumWidth());
}

} // namespace
} // namespace quelm
