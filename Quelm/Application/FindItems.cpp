#include "Quelm/Application/FindItems.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

namespace quelm {

namespace {

struct FindItems {
    Q_DECLARE_TR_FUNCTIONS(quelm::FindItems)
};

} // namespace

void addFindItems(QMenu& menu, EditorView& window) {
    menu.addSeparator();
    const auto add = [&](const QString& title, const QKeySequence& shortcut, void (FindBar::*action)()) {
        QAction* item = menu.addAction(title);
        item->setShortcut(shortcut);
        const auto update = [item, &window] { item->setEnabled(window.textEditor() != nullptr); };
        QObject::connect(item, &QAction::triggered, &window, [&window, action] {
            if (const JSONTextView* editor = window.textEditor())
                (editor->findBar().*action)();
        });
        QObject::connect(&window, &EditorView::editorAreaChanged, item, update);
        update();
    };
    add(FindItems::tr("&Buscar…"), QKeySequence::Find, &FindBar::openFind);
    add(FindItems::tr("Buscar s&iguiente"), Qt::Key_F3, &FindBar::findNext);
    add(FindItems::tr("Buscar &anterior"), Qt::SHIFT | Qt::Key_F3, &FindBar::findPrevious);
    add(FindItems::tr("Reemp&lazar…"), Qt::CTRL | Qt::Key_H, &FindBar::openReplace);
}

} // namespace quelm
