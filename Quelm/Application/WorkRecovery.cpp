#include "Quelm/Application/WorkRecovery.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/RecoveryQuestion.h"
#include "Quelm/Foundation/VisibleText.h"

#include <QMessageBox>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace quelm {

namespace {

/// How often and for how long a window is given time to appear before it is asked in nevertheless.
constexpr std::chrono::milliseconds timeBetweenLooks{50};
constexpr int mostLooks = 20;

} // namespace

WorkRecovery::WorkRecovery(DocumentController& documents, QString folder, QObject* parent)
    : QObject(parent), documents_(documents), folder_(std::move(folder)) {}

WorkRecovery::~WorkRecovery() = default;

void WorkRecovery::end() {
    if (--runningCount_ == 0)
        Q_EMIT becameIdle();
}

/// Where to ask, and to say what happened: the first window, since none may be in front yet.
EditorView& WorkRecovery::window() {
    if (documents_.windows().empty())
        documents_.newDocument();
    return *documents_.windows().front();
}

void WorkRecovery::start() {
    begin();
    startInBackground(
        this,
        [folder = folder_](const std::stop_token& stop) {
            Found found;
            for (LeftBehind& leftBehind : findLeftBehind(folder, stop))
                found.push_back(std::make_shared<LeftBehind>(std::move(leftBehind)));
            return found;
        },
        [this](Found found) {
            offer(std::move(found));
            end();
        })
        .detach();
}

void WorkRecovery::offer(Found found) {
    Found recoverable;
    Found unreachable;
    Found lost;
    for (auto& each : found) {
        const LeftBehind::State state = each->state;
        Found& kind = state == LeftBehind::State::recoverable   ? recoverable
                      : state == LeftBehind::State::unreachable ? unreachable
                                                                : lost;
        kind.push_back(std::move(each));
    }
    if (!lost.empty())
        reportLost(lost);
    if (!unreachable.empty())
        askUnreachable(unreachable);
    if (!recoverable.empty())
        askWhenShown(recoverable, mostLooks);
}

/// A box finds its place over a window only once the window has its own.
void WorkRecovery::askWhenShown(const Found& found, int looksLeft) {
    const QWindow* shown = window().windowHandle();
    if ((shown && shown->isExposed()) || looksLeft == 0)
        return ask(found);
    begin();
    QTimer::singleShot(timeBetweenLooks, this, [this, found, looksLeft] {
        askWhenShown(found, looksLeft - 1);
        end();
    });
}

void WorkRecovery::ask(const Found& found) {
    RecoverableNames names;
    for (const auto& each : found)
        (each->backup ? names.halfSaved : names.changed).append(each->name);
    begin();
    const QMessageBox* question = askBeforeRecovering(window(), names,
                                                      {.recover = [this, found] { recover(found); },
                                                       .discard = [this, found] { discard(found); },
                                                       .leave = {}});
    connect(question, &QObject::destroyed, this, &WorkRecovery::end);
}

void WorkRecovery::askUnreachable(const Found& unreachable) {
    QStringList names;
    for (const auto& each : unreachable)
        names.append(each->name);
    begin();
    const QMessageBox* question = askAboutUnreachable(
        window(), names, {.keepAside = [this, unreachable] { keepAside(unreachable); }, .leave = {}});
    connect(question, &QObject::destroyed, this, &WorkRecovery::end);
}

/// What becomes of what cannot be recovered, and how that is said.
static QString lineAboutLost(LeftBehind lost) {
    const QString name = visibleCharacters(lost.name);
    switch (lost.state) {
    case LeftBehind::State::unreadable:
        return WorkRecovery::tr("«%1» no se puede leer. Sigue en su sitio, y Quelm lo intentará de nuevo en el próximo "
                                "inicio.")
            .arg(lost.path.value_or(name));
    case LeftBehind::State::stale:
    case LeftBehind::State::damaged:
    case LeftBehind::State::unreachable:
    case LeftBehind::State::recoverable:
        break;
    }
    const QString reason = lost.state == LeftBehind::State::stale
                               ? WorkRecovery::tr("«%1»: el archivo ha cambiado desde entonces.")
                               : WorkRecovery::tr("«%1»: la copia de recuperación está dañada.");
    const auto aside = quelm::keepAside(std::move(lost));
    return reason.arg(name) + QChar::Space +
           (aside ? WorkRecovery::tr("Se conserva en %1.").arg(*aside) : aside.error().message);
}

void WorkRecovery::reportLost(const Found& lost) {
    begin();
    startInBackground(
        this,
        [lost](const std::stop_token&) {
            QStringList lines;
            for (const auto& each : lost)
                lines.append(lineAboutLost(std::move(*each)));
            return lines;
        },
        [this](const QStringList& lines) {
            documents_.tell(&window(),
                            tr("Quelm se cerró inesperadamente y hay cambios sin guardar que no se pueden recuperar."),
                            lines.join(u'\n'));
            end();
        })
        .detach();
}

void WorkRecovery::recover(const Found& found) {
    for (const auto& leftBehind : found) {
        begin();
        startInBackground(
            this,
            [leftBehind](const std::stop_token& stop) { return quelm::recover(std::move(*leftBehind), stop); },
            [this, name = leftBehind->name](std::expected<RecoveredDocument, FileError> recovered) {
                finish(name, std::move(recovered));
                end();
            })
            .detach();
    }
}

void WorkRecovery::finish(const QString& name, std::expected<RecoveredDocument, FileError> recovered) {
    if (!recovered)
        return documents_.tell(&window(),
                               tr("No se pudieron recuperar los cambios de «%1».").arg(visibleCharacters(name)),
                               recovered.error().message);
    const bool isPartial = recovered->isPartial;
    EditorView& shown = documents_.openRecovered(*std::move(recovered));
    if (isPartial)
        documents_.tell(&shown, tr("Los cambios de «%1» se recuperaron solo en parte.").arg(visibleCharacters(name)),
                        tr("El final de la copia de recuperación está dañado."));
}

void WorkRecovery::keepAside(const Found& found) {
    begin();
    startInBackground(
        this,
        [found](const std::stop_token&) {
            // What cannot be renamed is found again.
            for (const auto& each : found)
                (void)quelm::keepAside(std::move(*each));
            return 0;
        },
        [this](int) { end(); })
        .detach();
}

void WorkRecovery::discard(const Found& found) {
    begin();
    startInBackground(
        this,
        [found](const std::stop_token&) {
            for (const auto& each : found)
                quelm::discard(std::move(*each));
            return 0;
        },
        [this](int) { end(); })
        .detach();
}

} // namespace quelm
