#include "Quelm/Application/Question.h"

#include "Quelm/EditorWindow/Alert.h"
#include "TextCore/Check.h"

#include <QGuiApplication>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace quelm {

QMessageBox* ask(QWidget& window, const QString& question, std::vector<Answer> answers) {
    return ask(window, question, QString(), std::move(answers));
}

QMessageBox* ask(QWidget& window, const QString& question, const QString& details, std::vector<Answer> answers) {
    require(!answers.empty(), "a question has an answer");
    auto* box = new QMessageBox(QMessageBox::Question, QGuiApplication::applicationDisplayName(), question,
                                QMessageBox::NoButton, &window);
    box->setTextFormat(Qt::PlainText);
    useWarningSymbol(*box);
    if (!details.isEmpty())
        showDetails(*box, details);
    std::vector<QPushButton*> buttons;
    for (const Answer& answer : answers)
        buttons.push_back(box->addButton(answer.title, answer.role));
    box->setEscapeButton(buttons.back());
    const auto harmless = std::ranges::find(answers, QMessageBox::AcceptRole, &Answer::role);
    box->setDefaultButton(harmless == answers.end() ? buttons.back()
                                                    : buttons.at(static_cast<std::size_t>(harmless - answers.begin())));
    box->setAttribute(Qt::WA_DeleteOnClose);
    const std::function<void()> leave = answers.back().act;
    QObject::connect(box, &QMessageBox::buttonClicked, &window,
                     [buttons, answers = std::move(answers)](const QAbstractButton* clicked) {
                         const auto index = std::ranges::find(buttons, clicked) - buttons.begin();
                         // The window may go by it, and with it the box and this function.
                         const std::function<void()> act = answers.at(static_cast<std::size_t>(index)).act;
                         if (act)
                             act();
                     });
    // Closing a box clicks nothing.
    QObject::connect(box, &QDialog::rejected, &window, [box, leave] {
        if (!box->clickedButton() && leave)
            leave();
    });
    box->open();
    return box;
}

} // namespace quelm
