#include "JSONCore/JSONSerializer.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>

// A document window while something else has its document in hand, under random actions of a user, of an input method
// and of assistive technology: whatever they are, the document stays as it is, and everything is back afterwards.

namespace quelm {
namespace {

constexpr int actions = 3000;

constexpr std::string_view someText =
    "{\n  \"nombre\": \"Ana\",\n  \"edad\": 41,\n  \"activo\": true,\n  \"nada\": null,\n"
    "  \"lista\": [[], {}, [[[\"hondo\"]]], \"nombre\"],\n  \"a\": 1,\n  \"a\": 2\n}\n";

class LockedDocumentTests : public testing::Test {
protected:
    void open(Preferences::InitialMode mode) {
        Preferences::setInitialMode(mode);
        controller.newDocument();
        window = controller.windows().back();
        window->document().apply(JSONContent::fromText(TextRope(SharedText(someText))));
        window->resize(700, 500);
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        QGuiApplication::clipboard()->setText(QStringLiteral("{\"pegado\":1}"));
    }

    bool isTree() const { return window->document().mode() == EditorMode::tree; }
    QWidget* editor() const {
        return isTree() ? static_cast<QWidget*>(window->treeView()) : &window->textEditor()->textView();
    }
    QWidget* viewport() const { return static_cast<QAbstractScrollArea*>(editor())->viewport(); }

    /// What the document is, down to which text and which state of it.
    struct Identity {
        TextRope text;
        std::size_t hash;
        StateToken::Value state;
        std::int64_t revision;
        bool isModified;
    };
    Identity identity() const {
        JSONDocument& document = window->document();
        const TextRope text = document.textBuffer() ? document.textBuffer()->text() : TextRope();
        const auto bytes = isTree()
                               ? JSONSerializer::serialize(*document.content().tree, std::nullopt, JSONStyle::compact())
                               : text.contiguous();
        return {text, std::hash<std::string_view>{}(bytes.view()), document.stateToken().current(), document.revision(),
                document.isModified()};
    }
    void expectSame(const Identity& before, const std::string& when) {
        const Identity now = identity();
        ASSERT_TRUE(now.text.isSameValue(before.text)) << when;
        ASSERT_EQ(now.hash, before.hash) << when;
        ASSERT_EQ(now.state, before.state) << when;
        ASSERT_EQ(now.revision, before.revision) << when;
        ASSERT_EQ(now.isModified, before.isModified) << when;
        ASSERT_FALSE(window->treeEditor().editing()) << when;
        ASSERT_FALSE(window->undoManager().canUndo() || window->undoManager().canRedo()) << when;
    }

    std::size_t below(std::size_t limit) { return random() % limit; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    template <class Items>
    auto anyOf(const Items& items) {
        return items[below(std::size(items))];
    }
    Qt::KeyboardModifiers anyModifiers() {
        Qt::KeyboardModifiers modifiers;
        modifiers.setFlag(Qt::ShiftModifier, oneIn(3));
        modifiers.setFlag(Qt::ControlModifier, oneIn(3));
        modifiers.setFlag(Qt::AltModifier, oneIn(8));
        return modifiers;
    }
    QPoint anyPlace(const QWidget& widget) {
        return {static_cast<int>(below(static_cast<std::size_t>(std::max(1, widget.width())))),
                static_cast<int>(below(static_cast<std::size_t>(std::max(1, widget.height()))))};
    }
    QWidget* receiver() const {
        if (QWidget* popup = QApplication::activePopupWidget())
            return popup;
        QWidget* focused = QApplication::focusWidget();
        return focused && focused->window() == window ? focused : editor();
    }

    void pressAnyKey() {
        static constexpr std::array keys{
            Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Tab,   Qt::Key_F2,
            Qt::Key_Insert, Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Left,      Qt::Key_Right, Qt::Key_Home,
            Qt::Key_End,    Qt::Key_PageUp, Qt::Key_Z,      Qt::Key_Y,         Qt::Key_X,     Qt::Key_V,
            Qt::Key_C,      Qt::Key_D,      Qt::Key_K,      Qt::Key_A,         Qt::Key_B,     Qt::Key_M,
            Qt::Key_Space,  Qt::Key_5,      Qt::Key_Menu,   Qt::Key_F3};
        QTest::keyClick(receiver(), anyOf(keys), anyModifiers());
    }

    void useMouse() {
        static constexpr std::array buttons{Qt::LeftButton, Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};
        QWidget* target = QApplication::activePopupWidget() ? QApplication::activePopupWidget() : viewport();
        const QPoint place = anyPlace(*target);
        if (oneIn(4))
            return QTest::mouseDClick(target, Qt::LeftButton, {}, place);
        QTest::mouseClick(target, anyOf(buttons), oneIn(4) ? Qt::ShiftModifier : Qt::NoModifier, place);
    }

    void openMenu() {
        QContextMenuEvent event(oneIn(2) ? QContextMenuEvent::Mouse : QContextMenuEvent::Keyboard,
                                anyPlace(*viewport()), viewport()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(viewport(), &event);
    }

    /// Whatever is enabled in a menu that is open or could be, but what opens windows or takes the document elsewhere.
    void useMenus() {
        QMenu* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) {
            for (const QAction* entry : window->menuBar()->actions())
                if (entry->text().remove(u'&') == QStringLiteral("Edición"))
                    menu = entry->menu();
        }
        for (QAction* action : menu->actions())
            if (!action->isSeparator() && oneIn(3) && !action->text().contains(QStringLiteral("referencias")))
                action->trigger();
    }

    void compose() {
        QInputMethodEvent composing(QStringLiteral("ni"), {});
        QApplication::sendEvent(receiver(), &composing);
        QInputMethodEvent end;
        end.setCommitString(QStringLiteral("你"), oneIn(2) ? -1 : 0, oneIn(2) ? 1 : 0);
        QApplication::sendEvent(receiver(), &end);
    }

    void drop() {
        QMimeData data;
        data.setText(QStringLiteral("[1]"));
        const QPoint place = anyPlace(*viewport());
        const Qt::DropAction action = oneIn(2) ? Qt::MoveAction : Qt::CopyAction;
        QDragEnterEvent enter(place, action, &data, Qt::LeftButton, {});
        QApplication::sendEvent(viewport(), &enter);
        QDropEvent event(place, action, &data, Qt::LeftButton, {});
        QApplication::sendEvent(viewport(), &event);
    }

    void assist() {
        QAccessibleInterface* whole = QAccessible::queryAccessibleInterface(editor());
        if (QAccessibleEditableTextInterface* text = whole->editableTextInterface()) {
            text->insertText(static_cast<int>(below(40)), QStringLiteral("x"));
            text->replaceText(0, 5, QStringLiteral("x"));
            text->deleteText(3, 9);
            whole->setText(QAccessible::Value, QStringLiteral("x"));
        }
        if (whole->childCount() == 0 || !isTree())
            return;
        QAccessibleInterface* row = whole->child(static_cast<int>(below(std::size_t(whole->childCount()))));
        for (const QString& action :
             {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction(),
              QAccessibleActionInterface::showMenuAction()})
            if (oneIn(2))
                row->actionInterface()->doAction(action);
    }

    void replaceByFindBar() {
        if (isTree())
            return;
        const FindBar& bar = window->textEditor()->findBar();
        QTest::keyClick(editor(), Qt::Key_H, Qt::ControlModifier);
        const auto fields = bar.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        fields[0]->setText(anyOf(std::array{QStringLiteral("nombre"), QStringLiteral("a"), QStringLiteral("nada")}));
        for (auto* button : bar.findChildren<QPushButton*>())
            QTest::mouseClick(button, Qt::LeftButton);
        QTest::keyClick(fields[1], Qt::Key_Return, oneIn(2) ? Qt::ControlModifier : Qt::NoModifier);
        if (oneIn(2))
            QTest::keyClick(fields[0], Qt::Key_Escape);
        editor()->setFocus();
    }

    void act() {
        const std::size_t choice = below(100);
        if (choice < 50)
            pressAnyKey();
        else if (choice < 65)
            useMouse();
        else if (choice < 72)
            openMenu();
        else if (choice < 78)
            useMenus();
        else if (choice < 84)
            compose();
        else if (choice < 89)
            drop();
        else if (choice < 95)
            assist();
        else
            replaceByFindBar();
        while (QWidget* popup = oneIn(3) ? QApplication::activePopupWidget() : nullptr)
            popup->close();
    }

    void actWhileLocked() {
        window->setEditingLocked(true);
        const Identity before = identity();
        QSignalSpy changes(&window->document(), &JSONDocument::contentChanged);
        for (int action = 0; action < actions; ++action) {
            act();
            if (action % 20 == 0)
                QCoreApplication::processEvents();
            ASSERT_NO_FATAL_FAILURE(expectSame(before, "after action " + std::to_string(action)));
        }
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        QTest::qWait(20);
        ASSERT_NO_FATAL_FAILURE(expectSame(before, "at the end"));
        EXPECT_EQ(changes.count(), 0);
        window->setEditingLocked(false);
    }

    TemporaryPreferences preferences;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
    EditorView* window = nullptr;
    std::mt19937 random{20262};
};

TEST_F(LockedDocumentTests, NothingChangesATree) {
    open(Preferences::InitialMode::tree);
    ASSERT_TRUE(isTree());
    TreeEditor& tree = window->treeEditor();
    tree.setAllExpanded(true);
    tree.select(tree.outline().rowID(2));
    tree.duplicate();
    tree.remove();
    window->undoManager().undo();
    const std::size_t before = identity().hash;
    ASSERT_NO_FATAL_FAILURE(actWhileLocked());
    while (window->undoManager().canUndo())
        window->undoManager().undo();
    EXPECT_NE(identity().hash, before);
    EXPECT_FALSE(window->document().isModified());
    tree.select(tree.outline().rowID(1));
    editor()->setFocus();
    QTest::keyClick(editor(), Qt::Key_Delete);
    EXPECT_TRUE(window->document().isModified());
}

TEST_F(LockedDocumentTests, NothingChangesAText) {
    open(Preferences::InitialMode::text);
    ASSERT_FALSE(isTree());
    QTest::keyClicks(editor(), QStringLiteral("  "));
    QTest::keyClick(editor(), Qt::Key_Return);
    QTest::keyClick(editor(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_NO_FATAL_FAILURE(actWhileLocked());
    while (window->undoManager().canUndo())
        window->undoManager().undo();
    EXPECT_EQ(window->document().textBuffer()->text(), TextRope(SharedText(someText)));
    EXPECT_FALSE(window->document().isModified());
    editor()->setFocus();
    QTest::keyClicks(editor(), QStringLiteral("x"));
    EXPECT_TRUE(window->document().isModified());
}

} // namespace
} // namespace quelm
