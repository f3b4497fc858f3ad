#include "Quelm/Application/WindowMenu.h"

#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/FileTitles.h"
#include "Quelm/Application/WindowTitles.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

namespace quelm {

namespace {

/// Only what has a key is there from the beginning.
class WindowMenu : public QObject {
    Q_DECLARE_TR_FUNCTIONS(quelm::WindowMenu)

public:
    WindowMenu(QMenu* menu, EditorView& window, DocumentController& controller)
        : QObject(menu), menu_(*menu), window_(window), controller_(controller) {
        QAction* minimize = menu->addAction(tr("&Minimizar"));
        minimize->setShortcut(Qt::CTRL | Qt::Key_M);
        connect(minimize, &QAction::triggered, &window, &QWidget::showMinimized);
        connect(menu, &QMenu::aboutToShow, this, &WindowMenu::fill);
    }

private:
    void fill() {
        if (!maximize_)
            addMaximize();
        maximize_->setText(window_.isMaximized() ? tr("&Restaurar") : tr("Ma&ximizar"));
        qDeleteAll(std::exchange(windows_, {}));
        const std::vector<EditorView*> views = shownWindows();
        const QStringList titles = documentTitles(views);
        for (std::size_t index = 0; index < views.size(); ++index)
            addWindow(*views[index], titles[static_cast<qsizetype>(index)]);
    }

    void addMaximize() {
        maximize_ = menu_.addAction(QString());
        connect(maximize_, &QAction::triggered, &window_, [this] {
            if (window_.isMaximized())
                window_.showNormal();
            else
                window_.showMaximized();
        });
        menu_.addSeparator();
    }

    void addWindow(EditorView& view, const QString& title) {
        QAction* item = menu_.addAction(menuTitle(title, menu_.fontMetrics()));
        item->setCheckable(true);
        item->setChecked(&view == &window_);
        connect(item, &QAction::triggered, &view, [&view] { bringForward(view); });
        windows_.push_back(item);
    }

    std::vector<EditorView*> shownWindows() const {
        std::vector<EditorView*> views = controller_.windows();
        std::erase_if(views, [](const EditorView* view) { return !view->isVisible(); });
        return views;
    }

    QMenu& menu_;
    EditorView& window_;
    DocumentController& controller_;
    QAction* maximize_ = nullptr;
    QList<QAction*> windows_;
};

} // namespace

void addWindowMenu(EditorView& window, DocumentController& controller) {
    new WindowMenu(window.menuBar()->addMenu(WindowMenu::tr("&Ventana")), window, controller);
}

} // namespace quelm
