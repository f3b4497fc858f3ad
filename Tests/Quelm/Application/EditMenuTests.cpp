#include "Quelm/Application/EditMenu.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QVBoxLayout>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace quelm {
namespace {

class EditMenuTests : public testing::Test {
protected:
    EditMenuTests() {
        auto* page = new QWidget;
        auto* layout = new QVBoxLayout(page);
        view = new TextView(storage);
        view->setUndoManager(&steps);
        field = new QLineEdit;
        tree = new QWidget;
        tree->setFocusPolicy(Qt::StrongFocus);
        for (QWidget* widget : {static_cast<QWidget*>(view), static_cast<QWidget*>(field), tree})
            layout->addWidget(widget);
        window->setCentralWidget(page);
        addEditMenu(*window, steps, nullptr);
        window->resize(400, 300);
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        view->setFocus();
        QGuiApplication::clipboard()->clear();
    }

    QMenu* menu() const { return window->menuBar()->actions().constFirst()->menu(); }
    static QString titleOf(const QAction& action) { return action.text().section(u'\t', 0, 0).remove(u'&'); }
    QAction* item(const char* title) const {
        for (QAction* action : menu()->actions())
            if (titleOf(*action).startsWith(QString::fromUtf8(title)))
                return action;
        return nullptr;
    }
    /// The items that could be chosen, as the open menu shows them.
    std::vector<std::string> openedItems() {
        menu()->popup(window->mapToGlobal(QPoint(0, 0)));
        std::vector<std::string> enabled;
        for (const QAction* action : menu()->actions())
            if (!action->isSeparator() && action->isEnabled())
                enabled.push_back(titleOf(*action).toStdString());
        QTest::keyClick(menu(), Qt::Key_Escape);
        return enabled;
    }
    void choose(const char* title) {
        menu()->popup(window->mapToGlobal(QPoint(0, 0)));
        QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(item(title)).center());
    }
    QString text() const { return storage->string({0, storage->length()}); }

    std::shared_ptr<TextStorage> storage = std::make_shared<TextStorage>();
    UndoManager steps;
    std::unique_ptr<QMainWindow> window = std::make_unique<QMainWindow>();
    TextView* view = nullptr;
    QLineEdit* field = nullptr;
    QWidget* tree = nullptr;
};

TEST_F(EditMenuTests, TheMenuHasItsItemsInOrder) {
    EXPECT_EQ(menu()->title().remove(u'&'), QStringLiteral("Edición"));
    std::vector<std::string> titles;
    for (const QAction* action : menu()->actions())
        titles.push_back(action->isSeparator() ? "-" : titleOf(*action).toStdString());
    EXPECT_THAT(titles, testing::ElementsAre("Deshacer", "Rehacer", "-", "Cortar", "Copiar", "Pegar", "Eliminar", "-",
                                             "Seleccionar todo"));
}

TEST_F(EditMenuTests, TheItemsHaveTheirUsualKeysAndDeletingHasNone) {
    EXPECT_TRUE(item("Deshacer")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_Z)));
    EXPECT_TRUE(item("Rehacer")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)));
    EXPECT_TRUE(item("Rehacer")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_Y)));
    EXPECT_TRUE(item("Cortar")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_X)));
    EXPECT_TRUE(item("Copiar")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_C)));
    EXPECT_TRUE(item("Pegar")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_V)));
    EXPECT_TRUE(item("Seleccionar")->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_A)));
    EXPECT_TRUE(item("Eliminar")->shortcuts().isEmpty());
}

TEST_F(EditMenuTests, AnEmptyTextCanOnlyBePastedInto) {
    EXPECT_THAT(openedItems(), testing::IsEmpty());
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    EXPECT_THAT(openedItems(), testing::ElementsAre("Pegar"));
}

TEST_F(EditMenuTests, TheItemsFollowTheTextThatHasTheFocus) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    EXPECT_THAT(openedItems(), testing::ElementsAre("Deshacer Escribir", "Seleccionar todo"));
    choose("Seleccionar todo");
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 3}));
    EXPECT_THAT(openedItems(),
                testing::ElementsAre("Deshacer Escribir", "Cortar", "Copiar", "Eliminar", "Seleccionar todo"));
    choose("Cortar");
    EXPECT_EQ(text(), QString());
    choose("Pegar");
    choose("Pegar");
    EXPECT_EQ(text(), QStringLiteral("unouno"));
    choose("Deshacer Pegar");
    EXPECT_EQ(text(), QStringLiteral("uno"));
    choose("Rehacer Pegar");
    EXPECT_EQ(text(), QStringLiteral("unouno"));
    view->setSelectedRange({1, 4});
    choose("Copiar");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("noun"));
    choose("Eliminar");
    EXPECT_EQ(text(), QStringLiteral("uo"));
}

TEST_F(EditMenuTests, ATextThatIsOnlyReadIsCopiedAndSelected) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    view->setReadOnly(true);
    view->selectAll();
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    EXPECT_THAT(openedItems(), testing::ElementsAre("Copiar", "Seleccionar todo"));
}

TEST_F(EditMenuTests, ItemsThatKeysReachFollowWhetherTheTextIsOnlyRead) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    view->selectAll();
    const auto expectEnabled = [this](bool isEnabled) {
        for (const char* title : {"Deshacer", "Rehacer", "Cortar", "Pegar", "Eliminar"})
            EXPECT_EQ(item(title)->isEnabled(), isEnabled) << title;
        EXPECT_TRUE(item("Copiar")->isEnabled());
        EXPECT_TRUE(item("Seleccionar")->isEnabled());
    };
    expectEnabled(true);
    view->setReadOnly(true);
    expectEnabled(false);
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    for (const auto key : {Qt::Key_Z, Qt::Key_Y, Qt::Key_X, Qt::Key_V})
        QTest::keyClick(view, key, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("uno"));
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("uno"));
    view->setReadOnly(false);
    expectEnabled(true);

    field->setFocus();
    view->setReadOnly(true);
    EXPECT_TRUE(item("Pegar")->isEnabled()) << "the field can be pasted into";
    view->setFocus();
    expectEnabled(false);
}

TEST_F(EditMenuTests, AnOpenMenuFollowsWhetherTheTextIsOnlyRead) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    view->selectAll();
    menu()->popup(window->mapToGlobal(QPoint(0, 0)));
    EXPECT_TRUE(item("Eliminar")->isEnabled());
    EXPECT_FALSE(item("Rehacer")->isEnabled());
    view->setReadOnly(true);
    EXPECT_FALSE(item("Eliminar")->isEnabled());
    QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(item("Eliminar")).center());
    EXPECT_EQ(text(), QStringLiteral("uno"));
    view->setReadOnly(false);
    EXPECT_TRUE(item("Eliminar")->isEnabled());
    EXPECT_FALSE(item("Rehacer")->isEnabled()) << "as an open menu shows it";
    QTest::keyClick(menu(), Qt::Key_Escape);
}

TEST_F(EditMenuTests, SuspendedStepsCannotBeUndone) {
    tree->setFocus();
    bool isUndone = false;
    steps.registerUndo<QObject>(window.get(), [&isUndone](QObject&) { isUndone = true; });
    EXPECT_TRUE(item("Deshacer")->isEnabled());
    steps.setSuspended(true);
    EXPECT_FALSE(item("Deshacer")->isEnabled());
    QTest::keyClick(tree, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(isUndone);
    steps.setSuspended(false);
    QTest::keyClick(tree, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(isUndone);
}

TEST_F(EditMenuTests, TheTitlesFollowTheStepsAndTheFocus) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    EXPECT_NE(item("Deshacer Escribir"), nullptr);
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), QString());
    EXPECT_NE(item("Rehacer Escribir"), nullptr);
    EXPECT_EQ(item("Deshacer")->text().remove(u'&'), QStringLiteral("Deshacer"));
    field->setFocus();
    EXPECT_EQ(item("Rehacer")->text().remove(u'&'), QStringLiteral("Rehacer"));
}

TEST_F(EditMenuTests, EveryKeyOfRedoDoesTheStepAgain) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    view->undo();
    QTest::keyClick(view, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("uno"));
    view->undo();
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(text(), QStringLiteral("uno"));
}

TEST_F(EditMenuTests, DeleteAndBackspaceReachTheText) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    view->setSelectedRange({0, 0});
    QTest::keyClick(view, Qt::Key_Delete);
    EXPECT_EQ(text(), QStringLiteral("no"));
    QTest::keyClick(view, Qt::Key_End);
    QTest::keyClick(view, Qt::Key_Backspace);
    EXPECT_EQ(text(), QStringLiteral("n"));
}

TEST_F(EditMenuTests, WithoutATextOnlyTheStepsOfTheWindowAreOffered) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    tree->setFocus();
    EXPECT_THAT(openedItems(), testing::ElementsAre("Deshacer Escribir"));
    EXPECT_FALSE(item("Copiar")->isEnabled());
    QTest::keyClick(tree, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), QString());
    EXPECT_FALSE(item("Deshacer")->isEnabled());
    QTest::keyClick(tree, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("uno"));
}

TEST_F(EditMenuTests, AFieldKeepsItsOwnSteps) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    field->setFocus();
    EXPECT_THAT(openedItems(), testing::IsEmpty());
    QTest::keyClicks(field, QStringLiteral("dos"));
    EXPECT_THAT(openedItems(), testing::ElementsAre("Deshacer", "Seleccionar todo"));
    choose("Seleccionar todo");
    choose("Cortar");
    EXPECT_EQ(field->text(), QString());
    choose("Pegar");
    EXPECT_EQ(field->text(), QStringLiteral("dos"));
    choose("Deshacer");
    choose("Rehacer");
    choose("Seleccionar todo");
    choose("Copiar");
    choose("Eliminar");
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("dos"));
    EXPECT_EQ(text(), QStringLiteral("uno"));
}

TEST_F(EditMenuTests, TheMenuBarTakesTheFocusWithoutTakingTheTextAway) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    window->menuBar()->setFocus(Qt::MenuBarFocusReason);
    EXPECT_THAT(openedItems(), testing::ElementsAre("Deshacer Escribir", "Seleccionar todo"));
}

TEST_F(EditMenuTests, TextAndWindowMayGoWhileTheMenuIsThere) {
    QTest::keyClicks(view, QStringLiteral("uno"));
    delete view;
    EXPECT_THAT(openedItems(), testing::IsEmpty());
    window.reset();
    steps.removeAllActions();
}

} // namespace
} // namespace quelm
