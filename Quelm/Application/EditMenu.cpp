#include "Quelm/Application/EditMenu.h"

#include "Quelm/Application/EditTarget.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include <vector>

namespace quelm {

namespace {

/// The menu's items exactly as they stand are only needed while the menu is open. Between times an item that can be
/// reached by its keys follows what is cheap to know: asking the clipboard may mean asking another program.
class EditMenu : public QObject {
    Q_DECLARE_TR_FUNCTIONS(quelm::EditMenu)

public:
    EditMenu(QMenu* menu, const QMainWindow& window, UndoManager& windowSteps, TreeEditor* tree)
        : QObject(menu), menu_(*menu), window_(window), steps_(&windowSteps), tree_(tree) {
        add(menu, EditCommand::undo, {}, QKeySequence::keyBindings(QKeySequence::Undo));
        add(menu, EditCommand::redo, {}, redoKeys());
        menu->addSeparator();
        add(menu, EditCommand::cut, tr("Cor&tar"), QKeySequence::keyBindings(QKeySequence::Cut));
        add(menu, EditCommand::copy, tr("&Copiar"), QKeySequence::keyBindings(QKeySequence::Copy));
        add(menu, EditCommand::paste, tr("&Pegar"), QKeySequence::keyBindings(QKeySequence::Paste));
        // The key that deletes is that of whatever has the focus: in a text without a selection it deletes a character.
        add(menu, EditCommand::delete_, tr("&Eliminar") + u'\t' + nameOf(Qt::Key_Delete), {});
        menu->addSeparator();
        add(menu, EditCommand::selectAll, tr("&Seleccionar todo"), QKeySequence::keyBindings(QKeySequence::SelectAll));

        connect(menu, &QMenu::aboutToShow, this, &EditMenu::updateOpen);
        connect(menu, &QMenu::aboutToHide, this, &EditMenu::updateClosed);
        connect(&windowSteps, &UndoManager::changed, this, &EditMenu::update);
        connect(qApp, &QApplication::focusChanged, this, &EditMenu::noteFocus);
        if (tree) {
            connect(tree, &TreeEditor::outlineChanged, this, &EditMenu::update);
            connect(tree, &TreeEditor::selectionChanged, this, &EditMenu::update);
            connect(tree, &TreeEditor::isReadOnlyChanged, this, &EditMenu::update);
        }
        follow(window.focusWidget());
    }

private:
    struct Item {
        EditCommand command;
        QAction* action;
    };

    static QList<QKeySequence> redoKeys() {
        QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::Redo);
        for (const QKeySequence& key :
             {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)})
            if (!keys.contains(key))
                keys.append(key);
        return keys;
    }

    static QString nameOf(const QKeySequence& key) { return key.toString(QKeySequence::NativeText); }

    void add(QMenu* menu, EditCommand command, const QString& title, const QList<QKeySequence>& keys) {
        QAction* action = menu->addAction(title);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, [this, command] { perform(command); });
        items_.push_back({command, action});
    }

    std::unique_ptr<EditTarget> target() const { return editTargetOf(focused_, steps_, tree_); }

    void noteFocus(QWidget*, QWidget* now) {
        // An open menu bar takes the focus; what had it before is what the menu is for.
        if (!now || now->window() != &window_ || qobject_cast<QMenuBar*>(now))
            return;
        follow(now);
    }

    void follow(QWidget* focused) {
        if (auto* view = qobject_cast<TextView*>(focused_))
            disconnect(view, &TextView::readOnlyDidChange, this, &EditMenu::update);
        focused_ = focused;
        if (auto* view = qobject_cast<TextView*>(focused))
            connect(view, &TextView::readOnlyDidChange, this, &EditMenu::update);
        update();
    }

    void perform(EditCommand command) {
        if (const auto focused = target(); focused->canPerform(command))
            focused->perform(command);
    }

    void update() {
        if (menu_.isVisible())
            updateOpen();
        else
            updateClosed();
    }

    void updateClosed() {
        const auto focused = target();
        for (const Item& item : items_)
            item.action->setEnabled(focused->mightPerform(item.command));
        updateTitles(*focused);
    }

    void updateOpen() {
        const auto focused = target();
        for (const Item& item : items_)
            item.action->setEnabled(focused->canPerform(item.command));
        updateTitles(*focused);
    }

    void updateTitles(const EditTarget& focused) {
        for (const Item& item : items_)
            if (item.command == EditCommand::undo)
                item.action->setText(mnemonic(focused.undoTitle()));
            else if (item.command == EditCommand::redo)
                item.action->setText(mnemonic(focused.redoTitle()));
    }

    static QString mnemonic(QString title) { return u'&' + title.replace(u'&', QStringLiteral("&&")); }

    const QMenu& menu_;
    const QMainWindow& window_;
    QPointer<UndoManager> steps_;
    QPointer<TreeEditor> tree_;
    QPointer<QWidget> focused_;
    std::vector<Item> items_;
};

} // namespace

QMenu& addEditMenu(QMainWindow& window, UndoManager& windowSteps, TreeEditor* tree) {
    QMenu* menu = window.menuBar()->addMenu(EditMenu::tr("&Edición"));
    // The menu owns what keeps it true, so that neither sees the other end.
    new EditMenu(menu, window, windowSteps, tree);
    return *menu;
}

} // namespace quelm
