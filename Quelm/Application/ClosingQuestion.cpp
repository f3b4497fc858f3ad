#include "Quelm/Application/ClosingQuestion.h"

#include "Quelm/Application/Alert.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

namespace quelm {

namespace {

struct ClosingQuestion {
    Q_DECLARE_TR_FUNCTIONS(quelm::ClosingQuestion)
};

} // namespace

QMessageBox* askBeforeClosing(QWidget& window, const QString& name, ClosingAnswers answers) {
    auto* box = new QMessageBox(QMessageBox::Question, QGuiApplication::applicationDisplayName(),
                                ClosingQuestion::tr("¿Quieres guardar los cambios de \"%1\"?").arg(name),
                                QMessageBox::NoButton, &window);
    box->setTextFormat(Qt::PlainText);
    useWarningSymbol(*box);
    const QPushButton* save = box->addButton(ClosingQuestion::tr("Guardar"), QMessageBox::AcceptRole);
    const QPushButton* discard = box->addButton(ClosingQuestion::tr("No guardar"), QMessageBox::DestructiveRole);
    QPushButton* cancel = box->addButton(ClosingQuestion::tr("Cancelar"), QMessageBox::RejectRole);
    box->setEscapeButton(cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QMessageBox::buttonClicked, &window,
                     [save, discard, answers = std::move(answers)](const QAbstractButton* clicked) {
                         if (clicked == save)
                             answers.save();
                         else if (clicked == discard)
                             answers.discard();
                         else
                             answers.cancel();
                     });
    box->open();
    return box;
}

} // namespace quelm
