#include "Quelm/Application/HelpMenu.h"

#include "Quelm/Application/AboutBox.h"
#include "Quelm/Application/KeyList.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace quelm {

namespace {

struct HelpMenu {
    Q_DECLARE_TR_FUNCTIONS(quelm::HelpMenu)
};

void fill(QMenu& menu, QMainWindow& window) {
    QObject::connect(menu.addAction(HelpMenu::tr("&Atajos de teclado")), &QAction::triggered, &window,
                     [&window] { showKeyList(window); });
    QAction* about = menu.addAction(HelpMenu::tr("A&cerca de Quelm"));
    about->setMenuRole(QAction::AboutRole);
    QObject::connect(about, &QAction::triggered, &window, [&window] { showAboutBox(window); });
}

} // namespace

void addHelpMenu(QMainWindow& window) {
    QMenu* menu = window.menuBar()->addMenu(HelpMenu::tr("A&yuda"));
    // Nothing here has a key, so that it can wait until it is looked at.
    QObject::connect(
        menu, &QMenu::aboutToShow, &window, [menu, &window] { fill(*menu, window); }, Qt::SingleShotConnection);
}

} // namespace quelm
