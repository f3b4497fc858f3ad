#include "Quelm/Application/KeyList.h"

#include "Quelm/Application/KeySections.h"
#include "Quelm/Foundation/Fonts.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenuBar>
#include <QScrollBar>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace quelm {

namespace {

struct KeyList {
    Q_DECLARE_TR_FUNCTIONS(quelm::KeyList)
};

const QString dialogName = QStringLiteral("keyList");

void addSection(QTreeWidget& list, const KeySection& section) {
    auto* heading = new QTreeWidgetItem(&list, {section.title});
    heading->setFirstColumnSpanned(true);
    QFont font = list.font();
    font.setBold(true);
    heading->setFont(0, font);
    for (const KeySection::Entry& entry : section.entries)
        new QTreeWidgetItem(heading, {entry.title, entry.keys});
    heading->setExpanded(true);
}

/// Wide enough for the longest entry of either column.
void fitWidth(QTreeWidget& list) {
    list.header()->setStretchLastSection(false);
    for (int column = 0; column < list.columnCount(); ++column)
        list.resizeColumnToContents(column);
    list.setMinimumWidth(list.header()->length() + list.verticalScrollBar()->sizeHint().width() +
                         2 * list.frameWidth());
    list.header()->setStretchLastSection(true);
}

QTreeWidget* makeList(const QMainWindow& window, QWidget* parent) {
    auto* list = new QTreeWidget(parent);
    list->setHeaderLabels({KeyList::tr("Acción"), KeyList::tr("Teclas")});
    list->setAccessibleName(KeyList::tr("Atajos de teclado"));
    list->setUniformRowHeights(true);
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setSelectionMode(QAbstractItemView::NoSelection);
    for (const KeySection& section : menuKeys(*window.menuBar()) + editorKeys())
        addSection(*list, section);
    fitWidth(*list);
    return list;
}

} // namespace

QDialog* showKeyList(QMainWindow& window) {
    auto* dialog = window.findChild<QDialog*>(dialogName, Qt::FindDirectChildrenOnly);
    if (!dialog) {
        dialog = new QDialog(&window);
        dialog->setObjectName(dialogName);
        dialog->setWindowTitle(KeyList::tr("Atajos de teclado"));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
        QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
        QObject::connect(new QShortcut(Qt::CTRL | Qt::Key_W, dialog), &QShortcut::activated, dialog, &QDialog::close);
        auto* layout = new QVBoxLayout(dialog);
        layout->addWidget(makeList(window, dialog));
        layout->addWidget(buttons);
        dialog->resize(scaledPixels(520), scaledPixels(600));
    }
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return dialog;
}

} // namespace quelm
