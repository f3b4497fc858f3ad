#include "JSONCore/JSONSerializer.h"
#include "Quelm/Application/EditMenu.h"
#include "Quelm/Application/JSONCommands.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

// A document window in tree mode under random actions of a user: keys, the mouse, menus, fields, the clipboard, undo
// and redo. What each operation must do is worked out apart from it, and every step must lead back and forth exactly.

namespace quelm {
namespace {

/// A number that the environment may set, for longer runs and other ones.
int asked(const char* name, int usual) {
    const char* answer = std::getenv(name);
    return answer ? std::atoi(answer) : usual;
}

constexpr std::string_view firstText =
    R"({"nombre":"Ana","edad":41,"activo":true,"nada":null,"señas":{"calle":"Mayor\n3","nº":[1,2.50,-3e4]},)"
    R"("lista":[[],{},[[["hondo"]]],"\u00a0\r\u2028"],"a":1,"a":2})";

class TreeRandomActions : public testing::Test {
protected:
    TreeRandomActions() {
        document_ = documentWithText(firstText);
        window_ = std::make_unique<EditorView>(document_);
        addEditMenu(*window_, window_->undoManager(), &window_->treeEditor());
        addJSONCommands(*window_);
        window_->showDocument();
        window_->resize(640, 420);
        window_->show();
        window_->activateWindow();
        current_ = state();
        QObject::connect(document_.get(), &JSONDocument::contentChanged, window_.get(), [this] { noteChange(); });
    }

    UndoManager& steps() { return window_->undoManager(); }
    TreeEditor& editor() { return window_->treeEditor(); }
    const JSONTree& tree() { return *editor().tree(); }
    TreeView& view() { return *window_->findChild<TreeView*>(); }
    QWidget* viewport() { return view().viewport(); }

    std::string json(std::optional<NodeID> node = std::nullopt) {
        return std::string(JSONSerializer::serialize(tree(), node, JSONStyle::compact()).view());
    }
    std::size_t state() { return std::hash<std::string>{}(json()); }

    /// Every change is one step, and undoing and redoing restore what was there, to the byte.
    void noteChange() {
        const std::size_t now = state();
        if (steps().isUndoing()) {
            ASSERT_FALSE(done_.empty());
            ASSERT_EQ(now, done_.back()) << "undone";
            done_.pop_back();
            undone_.push_back(current_);
        } else if (steps().isRedoing()) {
            ASSERT_FALSE(undone_.empty());
            ASSERT_EQ(now, undone_.back()) << "redone";
            undone_.pop_back();
            done_.push_back(current_);
        } else {
            done_.push_back(current_);
            undone_.clear();
        }
        current_ = now;
    }

    std::size_t below(std::size_t limit) { return random_() % limit; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    template <class Items>
    auto anyOf(const Items& items) {
        return items[below(std::size(items))];
    }

    /// Where a key goes that the user presses now.
    QWidget* receiver() {
        if (QWidget* popup = QApplication::activePopupWidget())
            return popup;
        QWidget* focused = QApplication::focusWidget();
        return focused ? focused : &view();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(receiver(), key, modifiers); }
    void type(const QString& text) {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, receiver(), Qt::Key_unknown, letter, {});
    }

    QString anyText() {
        static const std::array texts{QStringLiteral("a"),      QStringLiteral("12"),   QStringLiteral("-0.5E+3"),
                                      QStringLiteral("true"),   QStringLiteral("ñ 中"), QStringLiteral("\"{[,:]}\\"),
                                      QStringLiteral("nombre"), QStringLiteral("x y")};
        return anyOf(texts);
    }
    QPoint anyPlace() {
        return {static_cast<int>(below(static_cast<std::size_t>(viewport()->width()))),
                static_cast<int>(below(static_cast<std::size_t>(viewport()->height())))};
    }

    /// The selection, if it can be worked with: part of the document, nothing in the way.
    std::optional<NodeID> subject() {
        const auto selection = editor().selection();
        if (QApplication::activePopupWidget() || editor().editing() || !selection || !editor().isLinked(*selection))
            return std::nullopt;
        return selection;
    }
    std::vector<NodeID> siblings(NodeID id) {
        const ChildList children = tree().children(*tree().parent(id));
        return {children.begin(), children.end()};
    }

    // What each operation must do.

    void checkRemoval() {
        const auto node = subject();
        if (!node)
            return press(Qt::Key_Delete);
        const bool isRoot = *node == tree().root();
        const std::int64_t expected = tree().nodeCount() - (isRoot ? 0 : tree().subtreeSize(*node));
        press(Qt::Key_Delete);
        ASSERT_EQ(tree().nodeCount(), expected);
        ASSERT_EQ(editor().isLinked(*node), isRoot);
        ASSERT_TRUE(editor().isLinked(*editor().selection()));
    }

    void checkMove() {
        const auto node = subject();
        const bool isUp = oneIn(2);
        std::vector<NodeID> expected = node ? siblings(*node) : std::vector<NodeID>{};
        const auto at = std::ranges::find(expected, node.value_or(JSONTree::holder));
        if (at != expected.end() && (isUp ? at != expected.begin() : at + 1 != expected.end()))
            std::iter_swap(at, isUp ? at - 1 : at + 1);
        press(isUp ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier | Qt::AltModifier);
        if (node) {
            ASSERT_EQ(siblings(*node), expected);
            ASSERT_EQ(editor().selection(), node);
        }
    }

    void checkDuplicate() {
        const auto node = subject();
        press(Qt::Key_D, Qt::ControlModifier);
        if (!node || *node == tree().root())
            return;
        const std::vector<NodeID> all = siblings(*node);
        const auto copy = std::ranges::find(all, *node) + 1;
        ASSERT_LT(copy, all.end());
        ASSERT_EQ(editor().selection(), *copy);
        ASSERT_EQ(json(*copy), json(*node));
        if (tree().isObjectMember(*node)) {
            ASSERT_TRUE(tree().key(*copy).starts_with(std::string(tree().key(*node)) + " copia"));
            ASSERT_EQ(tree().keyOccurrences(*tree().parent(*node), tree().key(*copy)), 1);
        }
    }

    void checkInsertion() {
        const auto node = subject();
        const std::int64_t before = tree().nodeCount();
        const bool isInside = oneIn(2);
        press(Qt::Key_Return, isInside ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier);
        if (!node || tree().nodeCount() == before)
            return;
        ASSERT_EQ(tree().nodeCount(), before + 1);
        ASSERT_TRUE(editor().editing());
        const NodeID inserted = editor().editing()->id;
        ASSERT_EQ(editor().selection(), inserted);
        ASSERT_EQ(editor().editing()->field == TreeEditor::Field::key, tree().isObjectMember(inserted));
        ASSERT_NE(view().inlineField(), nullptr);
        if (oneIn(2))
            return;
        const QString text = anyText();
        type(text);
        const bool isKey = editor().editing()->field == TreeEditor::Field::key;
        press(Qt::Key_Return);
        ASSERT_EQ(QString::fromStdString(std::string(isKey ? tree().key(inserted) : tree().scalar(inserted))), text);
    }

    void checkEdit() {
        const auto node = subject();
        press(oneIn(2) ? Qt::Key_F2 : Qt::Key_Return);
        if (!node || !editor().editing())
            return;
        const TreeEditor::Editing editing = *editor().editing();
        ASSERT_EQ(editing.id, *node);
        ASSERT_NE(view().inlineField(), nullptr);
        const auto held = [&] {
            return std::string(editing.field == TreeEditor::Field::key ? tree().key(*node) : tree().scalar(*node));
        };
        const std::string before = held();
        const QString text = anyText();
        type(text);
        if (oneIn(3)) {
            press(Qt::Key_Escape);
            ASSERT_EQ(held(), before);
            return;
        }
        if (oneIn(4))
            return; // whatever comes next finds an open field
        const bool isValid = view().inlineField()->isValid();
        press(Qt::Key_Return);
        ASSERT_EQ(held(), isValid ? text.toStdString() : before);
        ASSERT_FALSE(editor().editing());
    }

    void checkCopy() {
        const auto node = subject();
        press(Qt::Key_C, Qt::ControlModifier);
        if (node) {
            ASSERT_EQ(QGuiApplication::clipboard()->text().toStdString(),
                      JSONSerializer::serialize(tree(), *node, Preferences::preferredStyle()).view());
        }
    }

    void checkPaste() {
        static const std::array texts{"7", "{\"b\":[1,{}]}", "[]", "\"é\"", "no", "", "[1", "null"};
        const std::string text = anyOf(texts);
        const auto node = subject();
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
        const std::int64_t before = tree().nodeCount();
        if (oneIn(2))
            press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
        else
            press(Qt::Key_V, Qt::ControlModifier);
        if (node && tree().nodeCount() != before) {
            ASSERT_EQ(json(*editor().selection()), text);
        }
    }

    // What only must not do harm.

    void navigate() {
        static constexpr std::array keys{Qt::Key_Up,     Qt::Key_Down,     Qt::Key_Left, Qt::Key_Right,
                                         Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
        press(anyOf(keys), oneIn(4) ? Qt::AltModifier : Qt::NoModifier);
    }

    void useMouse() {
        if (QApplication::activePopupWidget())
            return press(Qt::Key_Escape);
        const Qt::KeyboardModifiers modifiers = oneIn(6) ? Qt::ShiftModifier : Qt::NoModifier;
        const QPoint place = anyPlace();
        QWidget* target = viewport()->childAt(place);
        const QPoint there = target ? target->mapFrom(viewport(), place) : place;
        target = target ? target : viewport();
        if (oneIn(4))
            return QTest::mouseDClick(target, Qt::LeftButton, modifiers, there);
        QTest::mouseClick(target, oneIn(5) ? Qt::RightButton : Qt::LeftButton, modifiers, there);
    }

    void clickPart() {
        if (QApplication::activePopupWidget())
            return press(Qt::Key_Escape);
        static constexpr std::array parts{TreeRowPart::chevron, TreeRowPart::badge, TreeRowPart::label,
                                          TreeRowPart::value};
        const std::int64_t row =
            static_cast<std::int64_t>(below(static_cast<std::size_t>(editor().outline().rowCount())));
        view().scrollToRow(row);
        const QPoint place = view().partArea(row, anyOf(parts)).center().toPoint();
        if (viewport()->rect().contains(place) && !viewport()->childAt(place))
            QTest::mouseClick(viewport(), Qt::LeftButton, {}, place);
    }

    void openMenu() {
        if (QApplication::activePopupWidget())
            return useMenu();
        if (oneIn(2))
            return press(Qt::Key_Menu);
        QContextMenuEvent event(QContextMenuEvent::Mouse, anyPlace(), viewport()->mapToGlobal(anyPlace()));
        QApplication::sendEvent(viewport(), &event);
    }

    void useMenu() {
        static constexpr std::array keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up,     Qt::Key_Right,
                                         Qt::Key_Left, Qt::Key_Home, Qt::Key_Return, Qt::Key_Escape};
        for (std::size_t count = 1 + below(6); count > 0 && QApplication::activePopupWidget(); --count)
            press(anyOf(keys));
    }

    void scroll() {
        if (QApplication::activePopupWidget())
            return;
        const QPoint angle(0, oneIn(2) ? 120 : -120);
        const QPointF place(anyPlace());
        QWheelEvent event(place, viewport()->mapToGlobal(place), {}, angle, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    }

    void useField() {
        if (!view().inlineField())
            return type(QStringLiteral("n"));
        static constexpr std::array keys{Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Backspace, Qt::Key_Left,
                                         Qt::Key_Right, Qt::Key_Up,      Qt::Key_Down,      Qt::Key_Return,
                                         Qt::Key_Enter, Qt::Key_Home,    Qt::Key_Delete,    Qt::Key_Escape};
        if (oneIn(3))
            type(anyText());
        press(anyOf(keys), oneIn(5) ? Qt::ShiftModifier : Qt::NoModifier);
    }

    /// Replaces the whole content, as formatting does.
    void format() {
        JSONContent content = document_->content();
        content.style = oneIn(2) ? JSONStyle::compact() : JSONStyle::pretty(JSONStyle::Indent::tab, false);
        content.text = JSONSerializer::serializeToString(tree(), std::nullopt, content.style);
        document_->replaceContent(std::move(content), &steps());
        ASSERT_FALSE(editor().editing());
    }

    void resize() {
        window_->resize(300 + static_cast<int>(below(500)), 150 + static_cast<int>(below(400)));
        editor().setAllExpanded(oneIn(2));
    }

    void undoOrRedo() { press(Qt::Key_Z, oneIn(3) ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier); }

    void act() {
        struct Choice {
            std::size_t weight;
            void (TreeRandomActions::*action)();
        };
        static constexpr std::array<Choice, 17> choices{{{14, &TreeRandomActions::navigate},
                                                         {8, &TreeRandomActions::useMouse},
                                                         {8, &TreeRandomActions::clickPart},
                                                         {4, &TreeRandomActions::openMenu},
                                                         {5, &TreeRandomActions::useMenu},
                                                         {8, &TreeRandomActions::useField},
                                                         {2, &TreeRandomActions::scroll},
                                                         {1, &TreeRandomActions::resize},
                                                         {8, &TreeRandomActions::checkEdit},
                                                         {6, &TreeRandomActions::checkInsertion},
                                                         {4, &TreeRandomActions::checkDuplicate},
                                                         {5, &TreeRandomActions::checkMove},
                                                         {4, &TreeRandomActions::checkRemoval},
                                                         {3, &TreeRandomActions::checkCopy},
                                                         {5, &TreeRandomActions::checkPaste},
                                                         {1, &TreeRandomActions::format},
                                                         {14, &TreeRandomActions::undoOrRedo}}};
        // What a paste of something else than JSON is told with.
        if (auto* alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            QTest::keyClick(alert, oneIn(2) ? Qt::Key_Return : Qt::Key_Escape);
        ASSERT_EQ(QApplication::activeModalWidget(), nullptr);
        // Without a window manager nothing makes the window active again after a menu.
        if (!QApplication::activePopupWidget() && !window_->isActiveWindow()) {
            window_->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        }
        std::size_t drawn = below(100);
        choice_ = 0;
        while (drawn >= choices[choice_].weight)
            drawn -= choices[choice_++].weight;
        (this->*choices[choice_].action)();
        keepSmall();
    }

    /// A document that only grows would be slow to compare.
    void keepSmall() {
        if (tree().nodeCount() < 200)
            return;
        while (QApplication::activePopupWidget() || editor().editing())
            press(Qt::Key_Escape);
        while (tree().nodeCount() > 60 && !tree().children(tree().root()).empty()) {
            editor().select(tree().children(tree().root())[0]);
            press(Qt::Key_Delete);
        }
    }

    TemporaryPreferences preferences_;
    std::mt19937 random_{static_cast<unsigned>(asked("QUELM_TREE_SEED", 20264))};
    std::shared_ptr<JSONDocument> document_;
    std::unique_ptr<EditorView> window_;
    std::size_t choice_ = 0;
    /// The states as hashes: now, before each step that can be undone, and after each that can be redone.
    std::size_t current_ = 0;
    std::vector<std::size_t> done_;
    std::vector<std::size_t> undone_;
};

TEST_F(TreeRandomActions, LoseNothingAndCanAllBeUndone) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    const JSONTree first = tree();
    const int actions = asked("QUELM_TREE_ACTIONS", 3000);
    for (int action = 0; action < actions; ++action) {
        ASSERT_NO_FATAL_FAILURE(act()) << "action " << action << ", " << choice_;
        ASSERT_EQ(state(), current_) << "action " << action << ", " << choice_ << " made a change of no step";
        ASSERT_EQ(steps().canUndo(), !done_.empty()) << "action " << action << ", " << choice_;
        ASSERT_EQ(steps().canRedo(), !undone_.empty()) << "action " << action << ", " << choice_;
        ASSERT_EQ(view().inlineField() != nullptr, editor().editing().has_value())
            << "action " << action << ", " << choice_;
        if (action % 10 == 0) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        if (action % 100 == 0) {
            editor().outline().checkInvariants(tree());
            tree().checkInvariants();
        }
    }
    while (QApplication::activePopupWidget() || editor().editing())
        press(Qt::Key_Escape);
    while (steps().canRedo())
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    const std::string last = json();
    while (steps().canUndo())
        press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(tree() == first) << json();
    while (steps().canRedo())
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(json(), last);
}

} // namespace
} // namespace quelm
