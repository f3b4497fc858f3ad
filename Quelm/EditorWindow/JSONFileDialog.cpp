#include "Quelm/EditorWindow/JSONFileDialog.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/Fonts.h"

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QScreen>
#include <QTreeView>

namespace quelm {

namespace {

struct JSONFileDialog {
    Q_DECLARE_TR_FUNCTIONS(quelm::JSONFileDialog)
};

/// The room that is left to a window's frame and to what lies around it.
constexpr double shareOfTheScreen = 0.9;

QSize sizeOn(const QScreen& screen) {
    return QSize(scaledPixels(860), scaledPixels(560)).boundedTo(screen.availableSize() * shareOfTheScreen);
}

/// After a question of the dialog's own a window manager may leave the keyboard with the dialog, that is with nobody.
void activateUnlessAnotherIs(QWidget& window) {
    const QWidget* active = QApplication::activeWindow();
    if (window.isVisible() && (!active || active == &window))
        window.activateWindow();
}

} // namespace

QFileDialog* makeJSONFileDialog(QWidget& window, const QString& title) {
    auto* dialog = new QFileDialog(&window, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilters({JSONFileDialog::tr("Archivos JSON (%1)").arg(JSONDocument::fileNamePattern()),
                            JSONFileDialog::tr("Todos los archivos (*)")});
    dialog->resize(sizeOn(*window.screen()));
    // Of Qt's own dialog, whose last column holds the longest texts but one.
    if (const auto* list = dialog->findChild<QTreeView*>(QStringLiteral("treeView")))
        list->header()->setStretchLastSection(true);
    return dialog;
}

QFileDialog* makeJSONSaveDialog(QWidget& window, const QString& title) {
    QFileDialog* dialog = makeJSONFileDialog(window, title);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("json"));
    // Later, since the dialog may go as a part of the window.
    QObject::connect(
        dialog, &QObject::destroyed, &window, [&window] { activateUnlessAnotherIs(window); }, Qt::QueuedConnection);
    return dialog;
}

} // namespace quelm
