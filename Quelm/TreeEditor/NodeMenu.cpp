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

} // namespace

NodeMenu::NodeMenu(TreeEditor& editor, NodeID id, QWidget* parent) : QMenu(parent), editor_(editor), id_(id) {
    const std::optional<NodeKind> kind = editor.isLinked(id) ? std::optional(editor.tree()->kind(id)) : std::nullopt;

    showKey(add(tr("Editar"), [](TreeEditor& tree) { tree.activate(); }), Qt::Key_F2);
    addKindItems(*addMenu(tr("Cambiar tipo")), kind, [this](NodeKind chosen) {
        editor_.select(id_);
        editor_.changeType(id_, chosen);
    });
    addSeparator();
    showKey(add(tr("Insertar debajo"), [](TreeEditor& tree) { tree.insert(false); }), Qt::CTRL | Qt::Key_Return);
    QAction* child = add(tr("Insertar hijo"), [](TreeEditor& tree) { tree.insert(true); });
    child->setEnabled(kind && isContainer(*kind));
    showKey(child, Qt::SHIFT | Qt::CTRL | Qt::Key_Return);
    showKey(add(tr("Duplicar"), [](TreeEditor& tree) { tree.duplicate(); }), Qt::CTRL | Qt::Key_D);
    showKey(add(tr("Mover arriba"), [](TreeEditor& tree) { tree.move(-1); }), Qt::ALT | Qt::CTRL | Qt::Key_Up);
    showKey(add(tr("Mover abajo"), [](TreeEditor& tree) { tree.move(1); }), Qt::ALT | Qt::CTRL | Qt::Key_Down);
    addSeparator();
    showKey(add(tr("Copiar ruta"), [](TreeEditor& tree) { tree.copyPath(); }), Qt::SHIFT | Qt::CTRL | Qt::Key_C);
    showKey(add(tr("Copiar como JSON"), [](TreeEditor& tree) { tree.copyJSON(Preferences::preferredStyle()); }),
            QKeySequence::Copy);
    add(tr("Copiar como JSON compacto"), [](TreeEditor& tree) { tree.copyJSON(JSONStyle::compact()); });
    showKey(add(tr("Pegar JSON"), [](TreeEditor& tree) { tree.pasteJSON(); }), Qt::SHIFT | Qt::CTRL | Qt::Key_V);
    addSeparator();
    QAction* removal = add(tr("Eliminar"), [](TreeEditor& tree) { tree.remove(); });
    removal->setIcon(symbolIcon(QStringLiteral("trash"), ColorRole::red));
    showKey(removal, Qt::Key_Delete);

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

void addKindItems(QMenu& menu, std::optional<NodeKind> current, const std::function<void(NodeKind)>& choose) {
    for (const NodeKind kind : allNodeKinds) {
        QAction* action = menu.addAction(kindName(kind), &menu, [choose, kind] { choose(kind); });
        action->setEnabled(kind != current);
    }
}

} // namespace quelm
