#include "Quelm/Application/FileMenu.h"

#include "Quelm/Application/DocumentController.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace quelm {

namespace {

struct FileMenu {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileMenu)
};

} // namespace

void addFileMenu(EditorView& window, DocumentController& controller) {
    QMenu* menu = window.menuBar()->addMenu(FileMenu::tr("&Archivo"));
    const auto add = [&](const QString& title, const QKeySequence& shortcut, auto action) {
        QAction* item = menu->addAction(title);
        item->setShortcut(shortcut);
        QObject::connect(item, &QAction::triggered, &window, action);
        return item;
    };
    add(FileMenu::tr("&Abrir…"), Qt::CTRL | Qt::Key_O, [&] { controller.showOpenDialog(window); });
    menu->addSeparator();
    add(FileMenu::tr("&Guardar"), Qt::CTRL | Qt::Key_S, [&] { controller.save(window); });
    add(FileMenu::tr("Guardar &como…"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, [&] { controller.saveAs(window); });
    menu->addSeparator();
    add(FileMenu::tr("&Salir"), Qt::CTRL | Qt::Key_Q, [&] { controller.quit(); })->setMenuRole(QAction::QuitRole);
}

} // namespace quelm
