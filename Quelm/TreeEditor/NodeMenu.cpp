#include "Quelm/TreeEditor/NodeMenu.h"

#include "JSONCore/JSONTree.h"
#include "Quelm/Foundation/Preferences.h"
#include "Quelm/Foundation/Symbols.h"
#include "Quelm/TreeEditor/KindPresentation.h"
#include "Quelm/TreeEditor/TreeEditor.h"

namespace quelm {

namespace {

/// Writes a key beside an item. The key is handled where the focus is: in the menu, which no key but its own reaches
/// while it is open, it never acts.
void showKey(QAction* action, const QKeySequence& key) {
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setShortcutVisibleInContextMenu(true);
}

/// Disables an item that is otherwise as it is for as long as the editor is read-only.
void disableWhileReadOnly(QAction* action, TreeEditor& editor) {
    const auto update = [action, &editor, applies = action->isEnabled()] {
        action->setEnabled(applies && !editor.isReadOnly());
    };
    QObject::connect(&editor, &TreeEditor::isReadOnlyChanged, action, update);
    update();
}

} // namespace

NodeMenu::NodeMenu(TreeEditor& editor, NodeID id, QWidget* parent) : QMenu(parent), editor_(editor), id_(id) {
    const std::optional<NodeKind> kind = editor.isLinked(id) ? std::optional(editor.tree()->kind(id)) : std::nullopt;

    addEdit(tr("Editar"), Qt::Key_F2, [](TreeEditor& tree) { tree.activate(); });
    QMenu* kinds = addMenu(tr("Cambiar tipo"));
    disableWhileReadOnly(kinds->menuAction(), editor);
    addKindItems(*kinds, editor, kind, [this](NodeKind chosen) {
        editor_.select(id_);
        editor_.changeType(id_, chosen);
    });
    addSeparator();
    addEdit(tr("Insertar debajo"), Qt::CTRL | Qt::Key_Return, [](TreeEditor& tree) { tree.insert(false); });
    QAction* child = add(tr("Insertar hijo"), [](TreeEditor& tree) { tree.insert(true); });
    child->setEnabled(kind && isContainer(*kind));
    disableWhileReadOnly(child, editor);
    showKey(child, Qt::SHIFT | Qt::CTRL | Qt::Key_Return);
    addEdit(tr("Duplicar"), Qt::CTRL | Qt::Key_D, [](TreeEditor& tree) { tree.duplicate(); });
    addEdit(tr("Mover arriba"), Qt::ALT | Qt::CTRL | Qt::Key_Up, [](TreeEditor& tree) { tree.move(-1); });
    addEdit(tr("Mover abajo"), Qt::ALT | Qt::CTRL | Qt::Key_Down, [](TreeEditor& tree) { tree.move(1); });
    addSeparator();
    showKey(add(tr("Copiar ruta"), [](TreeEditor& tree) { tree.copyPath(); }), Qt::SHIFT | Qt::CTRL | Qt::Key_C);
    showKey(add(tr("Copiar como JSON"), [](TreeEditor& tree) { tree.copyJSON(Preferences::preferredStyle()); }),
            QKeySequence::Copy);
    add(tr("Copiar como JSON compacto"), [](TreeEditor& tree) { tree.copyJSON(JSONStyle::compact()); });
    addEdit(tr("Pegar JSON"), Qt::SHIFT | Qt::CTRL | Qt::Key_V, [](TreeEditor& tree) { tree.pasteJSON(); });
    addSeparator();
    QAction* removal = addEdit(tr("Eliminar"), Qt::Key_Delete, [](TreeEditor& tree) { tree.remove(); });
    removal->setIcon(symbolIcon(QStringLiteral("trash"), ColorRole::red));

    // In another content the same id may name another node.
    connect(&editor.document(), &JSONDocument::revisionChanged, this, &QWidget::close);
    connect(&editor.document(), &JSONDocument::modeChanged, this, &QWidget::close);
}

QAction* NodeMenu::add(const QString& title, Operation operation) {
    return addAction(title, this, [this, operation = std::move(operation)] {
        editor_.select(id_);
        operation(editor_);
    });
}

QAction* NodeMenu::addEdit(const QString& title, const QKeySequence& key, Operation operation) {
    QAction* action = add(title, std::move(operation));
    disableWhileReadOnly(action, editor_);
    showKey(action, key);
    return action;
}

void addKindItems(QMenu& menu, TreeEditor& editor, std::optional<NodeKind> current,
                  const std::function<void(NodeKind)>& choose) {
    for (const NodeKind kind : allNodeKinds) {
        QAction* action = menu.addAction(kindName(kind), &menu, [choose, kind] { choose(kind); });
        action->setEnabled(kind != current);
        disableWhileReadOnly(action, editor);
    }
}

} // namespace quelm
