#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeRowAccessible.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"

#include <QKeySequence>

namespace quelm {

QStringList TreeRowAccessible::actionNames() const {
    if (!isValid())
        return {};
    QStringList names;
    // The first is what is done when nothing else is asked for.
    if (isContainerRow())
        names += toggleAction();
    if (isEditable())
        names += pressAction();
    return names + QStringList{setFocusAction(), showMenuAction()};
}

QString TreeRowAccessible::localizedActionName(const QString& name) const {
    if (name == toggleAction())
        return isValid() && isExpanded() ? tr("Colapsar") : tr("Expandir");
    if (name == pressAction())
        return tr("Editar");
    if (name == setFocusAction())
        return tr("Seleccionar");
    if (name == showMenuAction())
        return tr("Mostrar el menú");
    return {};
}

QString TreeRowAccessible::localizedActionDescription(const QString& name) const {
    if (name == toggleAction())
        return tr("Muestra u oculta lo que contiene");
    if (name == pressAction())
        return tr("Edita la clave o el valor");
    if (name == setFocusAction())
        return tr("Selecciona la fila");
    if (name == showMenuAction())
        return tr("Muestra lo que se puede hacer con la fila");
    return {};
}

void TreeRowAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    // What is done here may delete this interface.
    TreeView& view = view_.view();
    TreeEditor& editor = this->editor();
    const NodeID id = id_;
    if (name == toggleAction()) {
        editor.toggleExpansion(id, false);
        return;
    }
    view.setFocus();
    editor.select(id);
    if (name == pressAction())
        editor.activate();
    else if (name == showMenuAction())
        view.showSelectionMenu();
}

QStringList TreeRowAccessible::keyBindingsForAction(const QString& name) const {
    const auto key = [](Qt::Key code) { return QStringList(QKeySequence(code).toString(QKeySequence::NativeText)); };
    if (name == toggleAction())
        return key(isValid() && isExpanded() ? Qt::Key_Left : Qt::Key_Right);
    return name == pressAction() ? key(Qt::Key_Return) : QStringList();
}

} // namespace quelm
