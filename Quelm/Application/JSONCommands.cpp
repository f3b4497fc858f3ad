#include "Quelm/Application/JSONCommands.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/Preferences.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

#include <cstdint>
#include <vector>

namespace quelm {

namespace {

class JSONCommands : public QObject {
    Q_DECLARE_TR_FUNCTIONS(quelm::JSONCommands)

public:
    JSONCommands(QMenu* menu, EditorView& window) : QObject(menu), menu_(*menu), window_(window) {
        menu->setToolTipsVisible(true);
        addModes();
        menu->addSeparator();
        addFormats();
        menu->addSeparator();
        addEdits();
        menu->addSeparator();
        addRows();
        menu->addSeparator();
        addExchange();
        menu->addSeparator();
        addPlaces();
        followWindow();
        update();
    }

private:
    /// What must be there for an item to apply.
    enum class Need : std::uint8_t { freeDocument, node, editableNode, tree, text, textError };

    struct Item {
        QAction* action;
        Need need;
    };

    template <class Operation>
    QAction* add(Need need, const QString& title, const QList<QKeySequence>& shortcuts, Operation operation) {
        QAction* action = menu_.addAction(title);
        action->setShortcuts(shortcuts);
        connect(action, &QAction::triggered, this, operation);
        items_.push_back({action, need});
        return action;
    }

    QAction* addMode(const QString& title, const QKeySequence& shortcut, EditorMode mode) {
        return add(Need::freeDocument, title, {shortcut}, [this, mode] {
            model().switchMode(mode);
            // The click has checked the item; only the document says which editor there is.
            showMode();
        });
    }

    void addModes() {
        treeMode_ = addMode(tr("Á&rbol"), Qt::CTRL | Qt::Key_1, EditorMode::tree);
        textMode_ = addMode(tr("&Texto"), Qt::CTRL | Qt::Key_2, EditorMode::text);
        auto* group = new QActionGroup(this);
        for (QAction* mode : {treeMode_, textMode_}) {
            mode->setCheckable(true);
            group->addAction(mode);
        }
    }

    void addFormats() {
        add(Need::freeDocument, tr("&Embellecer"), {Qt::ALT | Qt::CTRL | Qt::Key_B},
            [this] { model().format(Preferences::preferredStyle()); });
        add(Need::freeDocument, tr("&Compactar"), {Qt::ALT | Qt::CTRL | Qt::Key_M}, [this] {
            model().format(JSONStyle::compact());
        })->setToolTip(tr("Todo en una línea, sin espacios"));
    }

    void addEdits() {
        add(Need::editableNode, tr("Insertar &debajo"), {Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter},
            [this] { tree().insert(false); });
        add(Need::editableNode, tr("Insertar &hijo"),
            {Qt::SHIFT | Qt::CTRL | Qt::Key_Return, Qt::SHIFT | Qt::CTRL | Qt::Key_Enter},
            [this] { tree().insert(true); });
        add(Need::editableNode, tr("D&uplicar"), {Qt::CTRL | Qt::Key_D}, [this] { tree().duplicate(); });
        // Some desktops take the first of the keys to go to another one.
        add(Need::editableNode, tr("Mover &arriba"), {Qt::ALT | Qt::CTRL | Qt::Key_Up, Qt::ALT | Qt::Key_Up},
            [this] { tree().move(-1); });
        add(Need::editableNode, tr("Mover a&bajo"), {Qt::ALT | Qt::CTRL | Qt::Key_Down, Qt::ALT | Qt::Key_Down},
            [this] { tree().move(+1); });
    }

    void addRows() {
        add(Need::tree, tr("E&xpandir todo"), {}, [this] { tree().setAllExpanded(true); });
        add(Need::tree, tr("C&olapsar todo"), {}, [this] { tree().setAllExpanded(false); });
    }

    void addExchange() {
        add(Need::node, tr("Cop&iar ruta"), {Qt::SHIFT | Qt::CTRL | Qt::Key_C}, [this] { tree().copyPath(); });
        add(Need::editableNode, tr("&Pegar JSON"), {Qt::SHIFT | Qt::CTRL | Qt::Key_V}, [this] { tree().pasteJSON(); });
    }

    void addPlaces() {
        add(Need::text, tr("Ir a lí&nea…"), {Qt::CTRL | Qt::Key_L}, [this] { model().setGoToLinePresented(true); });
        add(Need::textError, tr("Ir a&l error"), {}, [this] { model().goToError(); });
    }

    void followWindow() {
        connect(&window_, &EditorView::editorAreaChanged, this, &JSONCommands::update);
        connect(&window_.document(), &JSONDocument::modeChanged, this, &JSONCommands::update);
        connect(&model(), &EditorModel::isBusyChanged, this, &JSONCommands::update);
        connect(&model().validator(), &TextValidator::stateChanged, this, &JSONCommands::update);
        connect(&tree(), &TreeEditor::outlineChanged, this, &JSONCommands::update);
        connect(&tree(), &TreeEditor::selectionChanged, this, &JSONCommands::update);
        connect(&tree(), &TreeEditor::isReadOnlyChanged, this, &JSONCommands::update);
    }

    void update() {
        showMode();
        const bool hasNode = hasSelectedNode();
        for (const Item& item : items_)
            item.action->setEnabled(isThere(item.need, hasNode));
    }

    void showMode() {
        QAction* shown = window_.document().mode() == EditorMode::tree ? treeMode_ : textMode_;
        shown->setChecked(true);
    }

    bool isThere(Need need, bool hasNode) {
        switch (need) {
        case Need::freeDocument:
            return !window_.isOpening() && !isHeld();
        case Need::node:
            return hasNode;
        case Need::editableNode:
            return hasNode && !isHeld();
        case Need::tree:
            return isShown(EditorMode::tree);
        case Need::text:
            return isShown(EditorMode::text);
        case Need::textError:
            return isShown(EditorMode::text) && model().validator().state().isInvalid();
        }
        return false;
    }

    bool isShown(EditorMode mode) const { return !window_.isOpening() && window_.document().mode() == mode; }

    /// Whether something has the document in hand that it must not be taken from.
    bool isHeld() { return model().isBusy() || tree().isReadOnly(); }

    bool hasSelectedNode() {
        const std::optional<NodeID> selection = tree().selection();
        return isShown(EditorMode::tree) && selection && tree().isLinked(*selection);
    }

    EditorModel& model() { return window_.model(); }
    TreeEditor& tree() { return window_.treeEditor(); }

    QMenu& menu_;
    EditorView& window_;
    std::vector<Item> items_;
    QAction* treeMode_ = nullptr;
    QAction* textMode_ = nullptr;
};

} // namespace

QMenu& addJSONCommands(EditorView& window) {
    QMenu* menu = window.menuBar()->addMenu(JSONCommands::tr("&JSON"));
    // The menu owns what keeps it true, so that neither sees the other end.
    new JSONCommands(menu, window);
    return *menu;
}

} // namespace quelm
