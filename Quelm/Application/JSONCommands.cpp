#include "Quelm/Application/JSONCommands.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace quelm {

namespace {

struct JSONCommands {
    Q_DECLARE_TR_FUNCTIONS(quelm::JSONCommands)
};

} // namespace

QMenu& addJSONCommands(EditorView& window) {
    QMenu* menu = window.menuBar()->addMenu(JSONCommands::tr("&JSON"));
    const auto add = [&](const QString& title, const QList<QKeySequence>& shortcuts, auto operation) {
        QAction* item = menu->addAction(title);
        item->setShortcuts(shortcuts);
        const auto update = [item, &window] { item->setEnabled(!window.isOpening() && window.treeEditor().tree()); };
        QObject::connect(item, &QAction::triggered, &window, [&window, operation] { operation(window.treeEditor()); });
        QObject::connect(&window, &EditorView::editorAreaChanged, item, update);
        update();
    };
    add(JSONCommands::tr("Insertar &debajo"), {Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter},
        [](TreeEditor& tree) { tree.insert(false); });
    add(JSONCommands::tr("Insertar &hijo"),
        {Qt::SHIFT | Qt::CTRL | Qt::Key_Return, Qt::SHIFT | Qt::CTRL | Qt::Key_Enter},
        [](TreeEditor& tree) { tree.insert(true); });
    add(JSONCommands::tr("D&uplicar"), {Qt::CTRL | Qt::Key_D}, [](TreeEditor& tree) { tree.duplicate(); });
    // Some desktops take the first of the keys to go to another one.
    add(JSONCommands::tr("Mover &arriba"), {Qt::ALT | Qt::CTRL | Qt::Key_Up, Qt::ALT | Qt::Key_Up},
        [](TreeEditor& tree) { tree.move(-1); });
    add(JSONCommands::tr("Mover a&bajo"), {Qt::ALT | Qt::CTRL | Qt::Key_Down, Qt::ALT | Qt::Key_Down},
        [](TreeEditor& tree) { tree.move(+1); });
    menu->addSeparator();
    add(JSONCommands::tr("&Expandir todo"), {}, [](TreeEditor& tree) { tree.setAllExpanded(true); });
    add(JSONCommands::tr("C&olapsar todo"), {}, [](TreeEditor& tree) { tree.setAllExpanded(false); });
    menu->addSeparator();
    add(JSONCommands::tr("&Copiar ruta"), {Qt::SHIFT | Qt::CTRL | Qt::Key_C},
        [](TreeEditor& tree) { tree.copyPath(); });
    add(JSONCommands::tr("&Pegar JSON"), {Qt::SHIFT | Qt::CTRL | Qt::Key_V},
        [](TreeEditor& tree) { tree.pasteJSON(); });
    return *menu;
}

} // namespace quelm
