#include "Quelm/Application/FileMenu.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/RecentFilesMenu.h"
#include "Quelm/Foundation/Preferences.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace quelm {

namespace {

class FileMenu : public QObject {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileMenu)

public:
    FileMenu(QMenu* menu, EditorView& window, DocumentController& controller)
        : QObject(menu), window_(window), controller_(controller) {
        menu->setToolTipsVisible(true);
        add(*menu, tr("&Nuevo"), Qt::CTRL | Qt::Key_N, [this] { controller_.newDocument(); });
        add(*menu, tr("&Abrir…"), Qt::CTRL | Qt::Key_O, [this] { controller_.showOpenDialog(window_); });
        addRecentFilesMenu(*menu, controller);
        menu->addSeparator();
        add(*menu, tr("&Cerrar"), Qt::CTRL | Qt::Key_W, [this] { window_.close(); });
        save_ = add(*menu, tr("&Guardar"), Qt::CTRL | Qt::Key_S, [this] { controller_.save(window_); });
        saveAs_ =
            add(*menu, tr("Guardar c&omo…"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, [this] { controller_.saveAs(window_); });
        revert_ = add(*menu, tr("Re&vertir"), {}, [this] { controller_.revert(window_); });
        revert_->setToolTip(tr("Vuelve al archivo guardado"));
        menu->addSeparator();
        pretty_ = add(*menu, tr("Exportar JSON &bonito…"), Qt::CTRL | Qt::SHIFT | Qt::Key_E,
                      [this] { window_.model().prepareExport(Preferences::preferredStyle()); });
        pretty_->setToolTip(tr("Formato legible con sangría"));
        compact_ = add(*menu, tr("Exportar JSON co&mpacto…"), Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_E,
                       [this] { window_.model().prepareExport(JSONStyle::compact()); });
        compact_->setToolTip(tr("Todo en una línea, sin espacios"));
        menu->addSeparator();
        add(*menu, tr("&Salir"), Qt::CTRL | Qt::Key_Q, [this] { controller_.quit(); })->setMenuRole(QAction::QuitRole);
        followWindow();
        update();
    }

private:
    template <class Operation>
    QAction* add(QMenu& menu, const QString& title, const QKeySequence& shortcut, Operation operation) {
        QAction* item = menu.addAction(title);
        item->setShortcut(shortcut);
        connect(item, &QAction::triggered, this, operation);
        return item;
    }

    void followWindow() {
        const EditorModel& model = window_.model();
        const JSONDocument& document = window_.document();
        connect(&window_, &EditorView::editorAreaChanged, this, &FileMenu::update);
        connect(&document, &JSONDocument::isModifiedChanged, this, &FileMenu::update);
        connect(&document.configuration(), &DocumentConfiguration::fileLocationChanged, this, &FileMenu::update);
        connect(&model, &EditorModel::isBusyChanged, this, &FileMenu::update);
        connect(&window_.treeEditor(), &TreeEditor::isReadOnlyChanged, this, &FileMenu::update);
    }

    void update() {
        const JSONDocument& document = window_.document();
        const bool hasDocument = !window_.isOpening();
        const bool isHeld = window_.model().isBusy() || window_.treeEditor().isReadOnly();
        save_->setEnabled(hasDocument);
        saveAs_->setEnabled(hasDocument);
        revert_->setEnabled(hasDocument && !isHeld && document.isModified() && document.configuration().fileLocation());
        pretty_->setEnabled(hasDocument && !isHeld);
        compact_->setEnabled(hasDocument && !isHeld);
    }

    EditorView& window_;
    DocumentController& controller_;
    QAction* save_ = nullptr;
    QAction* saveAs_ = nullptr;
    QAction* revert_ = nullptr;
    QAction* pretty_ = nullptr;
    QAction* compact_ = nullptr;
};

} // namespace

void addFileMenu(EditorView& window, DocumentController& controller) {
    // The menu owns what keeps it true, so that neither sees the other end.
    new FileMenu(window.menuBar()->addMenu(FileMenu::tr("&Archivo")), window, controller);
}

} // namespace quelm
