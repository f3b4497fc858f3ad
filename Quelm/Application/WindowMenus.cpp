#include "Quelm/Application/WindowMenus.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/EditMenu.h"
#include "Quelm/Application/FileMenu.h"
#include "Quelm/Application/FindItems.h"
#include "Quelm/Application/HelpMenu.h"
#include "Quelm/Application/JSONCommands.h"
#include "Quelm/Application/TreeItems.h"
#include "Quelm/Application/WindowMenu.h"

#include <QCoreApplication>
#include <QMenu>

namespace quelm {

namespace {

struct WindowMenus {
    Q_DECLARE_TR_FUNCTIONS(quelm::WindowMenus)
};

void addPreferencesItem(QMenu& menu, DocumentController& controller) {
    menu.addSeparator();
    QAction* item = menu.addAction(WindowMenus::tr("Pre&ferencias…"));
    item->setShortcut(Qt::CTRL | Qt::Key_Comma);
    item->setMenuRole(QAction::PreferencesRole);
    QObject::connect(item, &QAction::triggered, &controller, &DocumentController::showSettings);
}

} // namespace

void addWindowMenus(EditorView& window, DocumentController& controller) {
    addFileMenu(window, controller);
    QMenu& edit = addEditMenu(window, window.undoManager(), &window.treeEditor());
    addTreeItems(edit, window);
    addFindItems(edit, window);
    addPreferencesItem(edit, controller);
    addJSONCommands(window);
    addWindowMenu(window, controller);
    addHelpMenu(window);
}

} // namespace quelm
