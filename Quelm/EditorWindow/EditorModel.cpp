#include "Quelm/EditorWindow/EditorModel.h"

#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "TextCore/Check.h"

#include <QThreadPool>

#include <utility>

namespace quelm {

EditorModel::EditorModel(std::shared_ptr<JSONDocument> document, Clock& clock)
    : document_(std::move(document)), clock_(clock), tree_(document_), validator_(clock) {
    tree_.onError = [self = QPointer<EditorModel>(this)](const QString& message) {
        if (self)
            self->setErrorMessage(message);
    };
    connect(document_.get(), &JSONDocument::revisionChanged, this, &EditorModel::validateShownText);
    connect(document_.get(), &JSONDocument::didApply, this, &EditorModel::dropOperation);
    connect(document_.get(), &JSONDocument::modeChanged, this, [this] {
        // A tree has no lines to go to.
        if (document_->mode() == EditorMode::tree)
            setGoToLinePresented(false);
    });
}

EditorModel::~EditorModel() {
    exporting_.task.detach();
    if (!waitingExports_.empty())
        backgroundThreads().start([exports = std::move(waitingExports_), folder = backupFolder_] {
            // There is nobody left to be told how they end.
            for (const Export& next : exports)
                (void)next.document->writeFile(next.path, {.backupFolder = folder});
        });
    if (isBusy_)
        setDocumentLocked(false);
}

void EditorModel::setUndoManager(UndoManager* undoManager) {
    if (undoManager == undoManager_)
        return;
    if (isBusy_ && undoManager_)
        undoManager_->setSuspended(false);
    undoManager_ = undoManager;
    tree_.setUndoManager(undoManager);
    if (isBusy_ && undoManager_)
        undoManager_->setSuspended(true);
}

// What the window shows.

void EditorModel::setErrorMessage(std::optional<QString> errorMessage) {
    if (errorMessage_ == errorMessage)
        return;
    errorMessage_ = std::move(errorMessage);
    Q_EMIT errorMessageChanged();
}

void EditorModel::setGoTo(std::optional<TextLocation> goTo) {
    if (goTo_ == goTo)
        return;
    goTo_ = goTo;
    Q_EMIT goToChanged();
}

void EditorModel::setGoToLinePresented(bool isPresented) {
    if (isGoToLinePresented_ == isPresented)
        return;
    isGoToLinePresented_ = isPresented;
    Q_EMIT isGoToLinePresentedChanged();
}

void EditorModel::goToError() {
    if (const JSONParseError* error = validator_.state().error())
        setGoTo(TextLocation(error->line, error->column));
}

// Operations.

void EditorModel::switchMode(EditorMode mode) {
    if (isBusy_ || mode == document_->mode())
        return;
    Q_EMIT willReadDocument();
    setBusy(true);
    operation_.task = document_->setMode(
        mode, [this](const std::expected<void, ConversionError>& result) { finishSwitching(result); });
}

void EditorModel::finishSwitching(const std::expected<void, ConversionError>& result) {
    if (result) {
        if (undoManager_)
            undoManager_->removeAllActions();
    } else {
        report(tr("No se puede mostrar como árbol porque el JSON no es válido.\n"), result.error());
    }
    setBusy(false);
}

void EditorModel::format(const JSONStyle& style) {
    if (isBusy_)
        return;
    Q_EMIT willReadDocument();
    setBusy(true);
    operation_.task = startInBackground(
        this,
        [content = document_->snapshot(), style](const std::stop_token& stop) mutable {
            return ContentConversion::reformat(std::move(content), style, stop);
        },
        [this, undoManager = undoManager_](ContentConversion::Result result) {
            finishFormatting(std::move(result), undoManager);
        });
}

void EditorModel::finishFormatting(ContentConversion::Result result, UndoManager* undoManager) {
    if (!result)
        report(tr("No se puede dar formato a un JSON inválido.\n"), result.error());
    else
        // Moved rather than copied: its tree keeps the index of its keys.
        document_->replaceContent(*std::move(result), undoManager, ContentOrigin::reformatting);
    setBusy(false);
}

void EditorModel::report(const QString& firstLine, const ConversionError& error) {
    if (error.isCancellation())
        return;
    const std::optional<JSONParseError>& parseError = error.parseError();
    // A lack of memory says nothing against the text.
    setErrorMessage(parseError ? firstLine + error.description() : error.description());
    if (parseError)
        setGoTo(TextLocation(parseError->line, parseError->column));
}

// What is under way.

void EditorModel::setBusy(bool isBusy) {
    if (isBusy_ == isBusy)
        return;
    isBusy_ = isBusy;
    setDocumentLocked(isBusy);
    if (isBusy)
        begin(operation_);
    else
        end(operation_);
    Q_EMIT isBusyChanged();
}

void EditorModel::setDocumentLocked(bool isLocked) {
    tree_.setReadOnly(isLocked);
    if (undoManager_)
        undoManager_->setSuspended(isLocked);
}

void EditorModel::begin(Work& work) {
    work.patienceCall = clock_.callAfter(patience, [this, &work] {
        work.isLong = true;
        updateWorkShown();
    });
}

void EditorModel::end(Work& work) {
    work.patienceCall.reset();
    work.isLong = false;
    updateWorkShown();
}

void EditorModel::updateWorkShown() {
    const ShownWork shown{operation_.isLong || exporting_.isLong, saving_.isLong ? savingProgress_ : nullptr};
    if (std::exchange(shownWork_, shown) != shown)
        Q_EMIT isWorkShownChanged();
}

void EditorModel::cancelWork() {
    dropOperation();
    cancelExports();
    if (saving_.isLong)
        Q_EMIT savingCancelled();
}

void EditorModel::dropOperation() {
    operation_.task.cancel();
    setBusy(false);
}

// Saving.

void EditorModel::noteSavingStarted(std::shared_ptr<const WorkProgress> progress) {
    require(progress != nullptr, "saving has a progress");
    savingProgress_ = std::move(progress);
    if (++savingCount_ == 1)
        begin(saving_);
    else
        updateWorkShown();
}

void EditorModel::noteSavingFinished() {
    require(savingCount_ > 0, "saving ends as often as it has begun");
    if (--savingCount_ > 0)
        return;
    end(saving_);
    savingProgress_ = nullptr;
}

// The text editor.

void EditorModel::noteTextChange() {
    document_->noteTextBufferEdited();
    validator_.schedule(TextValidator::typingPause, [this] { return shownText(); });
}

void EditorModel::validateShownText() {
    if (document_->mode() == EditorMode::tree)
        return validator_.adopt(TextValidator::State::idle());
    const JSONContent& content = document_->content();
    // What was typed and not committed is another text than the content tells of.
    const bool isKnown = !document_->isTextBufferEdited();
    if (isKnown && content.parseError)
        return validator_.adopt(TextValidator::State::invalid(*content.parseError));
    if (isKnown && content.tree)
        return validator_.adopt(TextValidator::State::valid(content.tree->nodeCount()));
    validator_.adopt(TextValidator::State::idle());
    validator_.schedule(std::chrono::milliseconds(0), [this] { return shownText(); });
}

TextRope EditorModel::shownText() const {
    if (const std::shared_ptr<TextStorage>& buffer = document_->textBuffer())
        return buffer->text();
    return document_->content().text.value_or(TextRope());
}

} // namespace quelm
