#include "Quelm/Application/TreeItems.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

namespace quelm {

namespace {

struct TreeItems {
    Q_DECLARE_TR_FUNCTIONS(quelm::TreeItems)
};

bool canRename(const TreeEditor& editor) {
    const std::optional<NodeID> selection = editor.selection();
    return !editor.isReadOnly() && editor.hasCurrentRows() && selection && editor.isLinked(*selection) &&
           editor.tree()->isObjectMember(*selection);
}

} // namespace

void addTreeItems(QMenu& menu, EditorView& window) {
    QAction* rename = menu.addAction(TreeItems::tr("Reno&mbrar clave"));
    rename->setShortcut(Qt::SHIFT | Qt::Key_F2);
    TreeEditor& editor = window.treeEditor();
    const auto update = [rename, &editor] { rename->setEnabled(canRename(editor)); };
    QObject::connect(rename, &QAction::triggered, &editor, [&editor] { editor.activate(TreeEditor::Field::key); });
    QObject::connect(&window, &EditorView::editorAreaChanged, rename, update);
    QObject::connect(&editor, &TreeEditor::outlineChanged, rename, update);
    QObject::connect(&editor, &TreeEditor::selectionChanged, rename, update);
    QObject::connect(&editor, &TreeEditor::isReadOnlyChanged, rename, update);
    update();
}

} // namespace quelm
