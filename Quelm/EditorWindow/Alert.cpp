#include "Quelm/EditorWindow/Alert.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/Symbols.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>

namespace quelm {

namespace {

/// A message box is no wider than its title wants, which breaks its details into many short lines.
void widen(QMessageBox& box) {
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout()))
        grid->addItem(new QSpacerItem(scaledPixels(360), 0), grid->rowCount(), 0, 1, grid->columnCount());
}

/// With details below it, what the box is about is its heading.
void emphasizeMessage(QMessageBox& box) {
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
        label->setFont(systemFont(TextStyle::body, QFont::DemiBold));
}

} // namespace

void showDetails(QMessageBox& box, const QString& details) {
    box.setInformativeText(details);
    // The format of the box is that of its heading only.
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setTextFormat(Qt::PlainText);
    widen(box);
    emphasizeMessage(box);
}

void useWarningSymbol(QMessageBox& box) {
    const int size = scaledPixels(40);
    box.setIconPixmap(symbolIcon(QStringLiteral("exclamationmark.triangle.fill"), ColorRole::warning)
                          .pixmap(QSize(size, size), box.devicePixelRatioF()));
}

QMessageBox* showAlert(QWidget* parent, const QString& message, const QString& details) {
    auto* box = new QMessageBox(QMessageBox::Warning, QGuiApplication::applicationDisplayName(), message,
                                QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    useWarningSymbol(*box);
    showDetails(*box, details);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (parent)
        box->open();
    else
        box->show();
    return box;
}

} // namespace quelm
