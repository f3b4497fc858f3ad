#include "Quelm/EditorWindow/EditorToolBar.h"

#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/EditorWindow/ModePicker.h"
#include "Quelm/EditorWindow/ToolBarButton.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/Preferences.h"

#include <QAction>
#include <QLayout>
#include <QMenu>

namespace quelm {

EditorToolBar::EditorToolBar(EditorModel& model, QWidget* parent)
    : QToolBar(parent), model_(model), modePicker_(new ModePicker) {
    setWindowTitle(tr("Barra de herramientas"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    // Not offered by the menus of the window either: there is no way to bring it back without a menu that lists it.
    toggleViewAction()->setVisible(false);
    layout()->setSpacing(scaledPixels(2));
    const int margin = scaledPixels(6);
    layout()->setContentsMargins(margin, margin, margin, margin);

    addWidget(modePicker_);
    modePicker_->setMode(model.document().mode());
    connect(&model.document(), &JSONDocument::modeChanged, modePicker_,
            [this] { modePicker_->setMode(model_.document().mode()); });
    connect(modePicker_, &ModePicker::modeChosen, this, [this](EditorMode mode) { model_.switchMode(mode); });
    addSeparator();
    addButtons();
    addExportButton();
}

void EditorToolBar::setUsable(bool isUsable) {
    modePicker_->setEnabled(isUsable);
    for (QAction* action : actions())
        action->setEnabled(isUsable);
}

QWidget* EditorToolBar::focusedItem() const {
    QWidget* item = window()->focusWidget();
    while (item && item->parentWidget() != this)
        item = item->parentWidget();
    return item;
}

void EditorToolBar::addButtons() {
    auto* pretty =
        new ToolBarButton(tr("Embellecer"), QStringLiteral("text.alignleft"), tr("Formato legible con sangría"));
    auto* compact = new ToolBarButton(tr("Compactar"), QStringLiteral("arrow.down.right.and.arrow.up.left"),
                                      tr("Todo en una línea, sin espacios"));
    connect(pretty, &QToolButton::clicked, this, [this] { model_.format(Preferences::preferredStyle()); });
    connect(compact, &QToolButton::clicked, this, [this] { model_.format(JSONStyle::compact()); });
    addWidget(pretty);
    addWidget(compact);
}

void EditorToolBar::addExportButton() {
    auto* button = new ToolBarButton(tr("Exportar"), QStringLiteral("square.and.arrow.up"),
                                     tr("Guardar una copia con otro formato"));
    auto* menu = new QMenu;
    menu->setToolTipsVisible(true);
    button->setDropDownMenu(menu);
    // Its items are made when they are asked for first.
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        if (menu->isEmpty())
            fillExportMenu(*menu);
    });
    addWidget(button);
}

void EditorToolBar::fillExportMenu(QMenu& menu) {
    QAction* pretty = menu.addAction(tr("JSON bonito…"));
    pretty->setToolTip(tr("Formato legible con sangría"));
    connect(pretty, &QAction::triggered, this, [this] { model_.prepareExport(Preferences::preferredStyle()); });
    QAction* compact = menu.addAction(tr("JSON compacto…"));
    compact->setToolTip(tr("Todo en una línea, sin espacios"));
    connect(compact, &QAction::triggered, this, [this] { model_.prepareExport(JSONStyle::compact()); });
}

} // namespace quelm
