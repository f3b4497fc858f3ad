#include "Quelm/Application/RecentFilesMenu.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/FileTitles.h"
#include "Quelm/Application/RecentFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFontMetrics>
#include <QMenu>

namespace quelm {

namespace {

struct RecentFilesMenu {
    Q_DECLARE_TR_FUNCTIONS(quelm::RecentFilesMenu)
};

void fill(QMenu& menu, DocumentController& controller) {
    menu.clear();
    const QStringList paths = RecentFiles::paths();
    const QStringList titles = fileTitles(paths);
    for (qsizetype index = 0; index < paths.size(); ++index) {
        const QString path = paths[index];
        QAction* item = menu.addAction(menuTitle(titles[index], menu.fontMetrics()));
        item->setToolTip(QDir::toNativeSeparators(path));
        QObject::connect(item, &QAction::triggered, &controller, [&controller, path] { controller.open(path); });
    }
    menu.addSeparator();
    QAction* emptying = menu.addAction(RecentFilesMenu::tr("&Vaciar lista"));
    emptying->setEnabled(!paths.isEmpty());
    QObject::connect(emptying, &QAction::triggered, &controller, [] { RecentFiles::clear(); });
}

} // namespace

void addRecentFilesMenu(QMenu& menu, DocumentController& controller) {
    QMenu* recent = menu.addMenu(RecentFilesMenu::tr("Abrir &recientes"));
    recent->setToolTipsVisible(true);
    QObject::connect(recent, &QMenu::aboutToShow, recent, [recent, &controller] { fill(*recent, controller); });
    QObject::connect(&menu, &QMenu::aboutToShow, recent,
                     [recent] { recent->setEnabled(!RecentFiles::paths().isEmpty()); });
}

} // namespace quelm
