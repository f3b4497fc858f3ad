#include "Quelm/EditorWindow/JSONFileDialog.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/Fonts.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFileDialog>
#include <QHeaderView>
#include <QScreen>
#include <QTreeView>

#include <algorithm>

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

/// Where the user goes on: what has come up over the window, or the window itself. When the dialog and a question of
/// its own go at once, a window manager may give the keyboard to another document, or leave it with the dialog.
void returnTo(QWidget& window) {
    if (!window.isVisible())
        return;
    const auto dialogs = window.findChildren<QDialog*>();
    const auto shown = std::ranges::find_if(dialogs, &QWidget::isVisible);
    QWidget& front = shown == dialogs.end() ? window : **shown;
    front.activateWindow();
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
    QObject::connect(dialog, &QObject::destroyed, &window, [&window] { returnTo(window); }, Qt::QueuedConnection);
    return dialog;
}

} // namespace quelm
