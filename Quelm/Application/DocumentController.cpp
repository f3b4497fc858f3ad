#include "Quelm/Application/DocumentController.h"

#include "Quelm/Application/Alert.h"
#include "Quelm/Application/ClosingQuestion.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Documents/DocumentSaving.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quelm {

namespace {

/// How long a window waits for its document before it shows itself without.
constexpr std::chrono::milliseconds patience{200};

QString nameFilters() {
    return DocumentController::tr("Archivos JSON (%1)").arg(JSONDocument::fileNamePattern()) + QStringLiteral(";;") +
           DocumentController::tr("Todos los archivos (*)");
}

/// A dialog for one window that deletes itself when it is done.
QFileDialog* makeDialog(QWidget* parent, const QString& title) {
    auto* dialog = new QFileDialog(parent, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(nameFilters());
    return dialog;
}

void bringForward(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

DocumentController::DocumentController(std::function<void(EditorView&)> prepareWindow, QObject* parent)
    : QObject(parent), prepareWindow_(std::move(prepareWindow)) {
    savingThread_.setMaxThreadCount(1);
}

DocumentController::~DocumentController() {
    const std::vector<EditorView*> windows = std::exchange(windows_, {});
    for (EditorView* window : windows) {
        window->disconnect(this);
        delete window;
    }
}

void DocumentController::newDocument() {
    EditorView* window = addWindow(std::make_shared<JSONDocument>());
    hasOpened_ = true;
    window->showDocument();
    window->show();
}

void DocumentController::open(const QString& path) {
    const QFileInfo file(path);
    const auto shown = std::ranges::find_if(windows_, [&](const EditorView* window) {
        const auto& location = window->document().configuration().fileLocation();
        return location && QFileInfo(*location) == file;
    });
    if (shown != windows_.end()) {
        bringForward(**shown);
        return;
    }

    // The window is made while the file is read, and read before it is shown as a rule.
    const QString location = file.absoluteFilePath();
    EditorView* window = addWindow(std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(location)));
    openings_[window] = startInBackground(
        window, [location](std::stop_token stop) { return loadDocument(location, std::move(stop)); },
        [this, window](std::expected<JSONContent, FileError> content) { finishOpening(window, std::move(content)); });
    QTimer::singleShot(patience, window, [window] { window->show(); });
}

void DocumentController::finishOpening(EditorView* window, std::expected<JSONContent, FileError> content) {
    openings_.erase(window);
    if (!content) {
        hasFailed_ = true;
        const QString name = window->document().configuration().displayName();
        alert(nullptr, tr("No se pudo abrir «%1».").arg(name), content.error().message);
        delete window;
        return;
    }
    hasOpened_ = true;
    window->document().apply(*std::move(content));
    window->showDocument();
    window->show();
}

void DocumentController::showOpenDialog(EditorView& window) {
    QFileDialog* dialog = makeDialog(&window, tr("Abrir"));
    if (const auto& location = window.document().configuration().fileLocation())
        dialog->setDirectory(QFileInfo(*location).absolutePath());
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) {
        for (const QString& path : paths)
            open(path);
    });
    dialog->open();
}

void DocumentController::save(EditorView& window) {
    if (window.isOpening())
        return;
    if (const auto& location = window.document().configuration().fileLocation())
        write(window, *location);
    else
        saveAs(window);
}

void DocumentController::saveAs(EditorView& window) {
    if (window.isOpening())
        return;
    window.finishEditing();
    QFileDialog* dialog = makeDialog(&window, tr("Guardar como"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("json"));
    const auto& location = window.document().configuration().fileLocation();
    dialog->selectFile(location.value_or(window.document().baseName() + QStringLiteral(".json")));
    connect(dialog, &QFileDialog::fileSelected, &window, [this, &window](const QString& path) { write(window, path); });
    connect(dialog, &QDialog::rejected, &window, [this, &window] { cancelClosing(window); });
    dialog->open();
}

void DocumentController::write(EditorView& window, const QString& path) {
    window.finishEditing();
    ++saveCount_;
    const auto document = window.sharedDocument();
    const QPointer<EditorView> owner(&window);
    // What is typed from now on is another step than what is saved.
    if (const JSONTextView* editor = window.textEditor())
        editor->textView().editing().endTypingStep();
    const StateToken::Value token = document->stateToken().current();
    startSaving(window, token);
    startInBackground(
        savingThread_, this,
        [path, snapshot = document->snapshot()](std::stop_token) { return saveDocument(path, snapshot); },
        [this, path, document, owner, token](const std::expected<void, FileError>& result) {
            --saveCount_;
            if (result) {
                document->configuration().setFileLocation(path);
                document->noteSaved(token);
            } else {
                if (owner)
                    cancelClosing(*owner);
                alert(owner, tr("No se pudo guardar «%1».").arg(QFileInfo(path).fileName()), result.error().message);
            }
            if (owner)
                finishSaving(*owner);
            announceIdle();
        })
        .detach();
}

EditorView* DocumentController::addWindow(std::shared_ptr<JSONDocument> document) {
    auto* window = new EditorView(std::move(document));
    window->setAttribute(Qt::WA_DeleteOnClose);
    prepareWindow_(*window);
    window->installEventFilter(this);
    windows_.push_back(window);
    connect(window, &EditorView::failed, this, [this, window](const QString& message) {
        alert(window, message.section(u'\n', 0, 0), message.section(u'\n', 1));
    });
    connect(window, &QObject::destroyed, this, [this, window] { removeWindow(window); });
    return window;
}

void DocumentController::removeWindow(EditorView* window) {
    openings_.erase(window);
    questions_.erase(window);
    closingWhenSaved_.erase(window);
    discarding_.erase(window);
    savings_.erase(window);
    std::erase(windows_, window);
    announceIdle();
}

bool DocumentController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Close)
        return QObject::eventFilter(watched, event);
    const auto found = std::ranges::find(windows_, watched);
    if (found == windows_.end() || discarding_.contains(*found))
        return QObject::eventFilter(watched, event);
    EditorView& window = **found;
    window.finishEditing();
    if (!window.document().isModified())
        return QObject::eventFilter(watched, event);
    event->ignore();
    const auto saving = savings_.find(&window);
    if (saving != savings_.end() && saving->second.token == window.document().stateToken().current())
        closingWhenSaved_.insert(&window);
    else
        askBeforeClosing(window);
    return true;
}

void DocumentController::askBeforeClosing(EditorView& window) {
    QPointer<QMessageBox>& question = questions_[&window];
    if (question)
        return question->raise();
    bringForward(window);
    question = quelm::askBeforeClosing(window, window.document().configuration().displayName(),
                                       {.save = [this, &window] { saveAndClose(window); },
                                        .discard = [this, &window] { discardAndClose(window); },
                                        .cancel = [this, &window] { cancelClosing(window); }});
}

void DocumentController::saveAndClose(EditorView& window) {
    closingWhenSaved_.insert(&window);
    save(window);
}

void DocumentController::discardAndClose(EditorView& window) {
    discarding_.insert(&window);
    if (isQuitting_)
        continueQuitting();
    else
        window.close();
}

void DocumentController::cancelClosing(EditorView& window) {
    closingWhenSaved_.erase(&window);
    if (std::exchange(isQuitting_, false))
        discarding_.clear();
}

void DocumentController::quit() {
    isQuitting_ = true;
    continueQuitting();
}

/// Asks about one window after the other, and closes them when all are settled.
void DocumentController::continueQuitting() {
    for (EditorView* window : windows_)
        window->finishEditing();
    const auto isToBeAsked = [this](EditorView* window) {
        return window->document().isModified() && !discarding_.contains(window);
    };
    if (const auto next = std::ranges::find_if(windows_, isToBeAsked); next != windows_.end()) {
        (*next)->close();
        return;
    }
    isQuitting_ = false;
    for (EditorView* window : std::vector(windows_))
        window->close();
}

void DocumentController::startSaving(EditorView& window, StateToken::Value token) {
    Saving& saving = savings_[&window];
    ++saving.count;
    saving.token = token;
}

void DocumentController::finishSaving(EditorView& window) {
    if (--savings_[&window].count > 0)
        return;
    savings_.erase(&window);
    // What is asked about may have been saved meanwhile.
    QPointer<QMessageBox>& question = questions_[&window];
    const bool isAnswered = question && !window.document().isModified();
    if (isAnswered)
        question->deleteLater();
    if (closingWhenSaved_.erase(&window) == 0 && !isAnswered)
        return;
    // What was saved may be less than what the window holds now: closing asks again then.
    if (isQuitting_)
        continueQuitting();
    else
        window.close();
}

void DocumentController::alert(QWidget* parent, const QString& message, const QString& details) {
    ++alertCount_;
    connect(showAlert(parent, message, details), &QObject::destroyed, this, [this] {
        --alertCount_;
        announceIdle();
    });
}

void DocumentController::announceIdle() {
    if (isIdle())
        Q_EMIT becameIdle();
}

} // namespace quelm
