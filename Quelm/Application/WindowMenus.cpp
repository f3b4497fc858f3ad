#include "Quelm/Application/WindowMenus.h"

#include "Quelm/Application/EditMenu.h"
#include "Quelm/Application/FileMenu.h"
#include "Quelm/Application/FindItems.h"
#include "Quelm/Application/JSONCommands.h"
#include "Quelm/Application/TreeItems.h"
#include "Quelm/EditorWindow/EditorView.h"

namespace quelm {

void addWindowMenus(EditorView& window, DocumentController& controller) {
    addFileMenu(window, controller);
    QMenu& edit = addEditMenu(window, window.undoManager(), &window.treeEditor());
    addTreeItems(edit, window);
    addFindItems(edit, window);
    addJSONCommands(window);
}

} // namespace quelm
