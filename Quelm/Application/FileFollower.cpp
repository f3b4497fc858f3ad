#include "Quelm/Application/FileFollower.h"

#include "Quelm/Application/FileExpectation.h"
#include "Quelm/Application/OutsideChangeQuestion.h"
#include "Quelm/Documents/SameFile.h"
#include "Quelm/EditorWindow/Alert.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/VisibleText.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <utility>

namespace quelm {

FileFollower::FileFollower(EditorView& window, Owner owner, Clock& clock)
    : QObject(&window), window_(window), owner_(std::move(owner)), clock_(clock) {}

FileFollower::~FileFollower() = default;

void FileFollower::check() {
    if (reload_ || comparison_.isRunning()) {
        isCheckWanted_ = true;
        return;
    }
    const DocumentConfiguration& configuration = window_.document().configuration();
    isCheckWanted_ = window_.isOpening() || owner_.isHeld();
    if (isCheckWanted_ || !configuration.fileLocation() || !configuration.fileState())
        return;
    const bool isKnown = knownChange_ && knownChange_->document == *configuration.fileState();
    comparison_ = startInBackground(
        this,
        [path = *configuration.fileLocation(), known = *configuration.fileState(),
         change = isKnown ? std::optional(knownChange_->file) : std::nullopt](const std::stop_token& stop) {
            // What is found out is true of some moment after this one.
            const FileState asOfNow{known.stamp, known.checksum};
            const FileComparison found = compareFile(path, known, change, stop);
            return std::pair(found, FileState{found.stamp.value_or(known.stamp), known.checksum, asOfNow.since});
        },
        [this, path = *configuration.fileLocation(),
         known = *configuration.fileState()](const std::pair<FileComparison, FileState>& found) {
            comparison_ = {};
            ++checkCount_;
            const DocumentConfiguration& now = window_.document().configuration();
            // It may have been saved or read meanwhile, under this or another name.
            const bool isOutdated = now.fileLocation() != path || now.fileState() != known || owner_.isHeld();
            if (isOutdated)
                return check();
            if (found.first.result == FileComparison::Result::same ||
                found.first.result == FileComparison::Result::touched)
                window_.document().configuration().setFileState(found.second);
            if (found.first.result == FileComparison::Result::changed)
                knownChange_ = {known, found.second};
            follow(found.first);
            resume();
        });
}

void FileFollower::resume() {
    if (isCheckWanted_)
        check();
}

void FileFollower::checkAfter(std::chrono::milliseconds delay) {
    checkCall_ = clock_.callAfter(delay, [this] { check(); });
}

void FileFollower::follow(const FileComparison& found) {
    switch (found.result) {
    case FileComparison::Result::cancelled:
        return;
    case FileComparison::Result::same:
    case FileComparison::Result::touched:
        return followReturn();
    case FileComparison::Result::changed:
    case FileComparison::Result::unreadable:
        return followChange(found.stamp.value_or(FileStamp()));
    case FileComparison::Result::gone:
        return followLoss();
    }
}

/// The file holds what it held before, which it may not have done in between.
void FileFollower::followReturn() {
    JSONDocument& document = window_.document();
    if (cleanState_ == document.stateToken().current())
        document.noteSaved(*cleanState_);
    settle();
}

void FileFollower::settle() {
    doubted_.reset();
    confirmationCall_.reset();
    told_.reset();
    left_.reset();
    accepted_.reset();
    cleanState_.reset();
    dismissNotice();
    dismissQuestion();
}

void FileFollower::noteInStep() {
    settle();
}

bool FileFollower::isUnedited() const {
    const JSONDocument& document = window_.document();
    return !document.isModified() || cleanState_ == window_.document().stateToken().current();
}

/// Whether the content can be replaced without taking something out of somebody's hands.
bool FileFollower::canBeTouched() const {
    const JSONTextView* editor = window_.textEditor();
    const bool isComposing = editor && editor->textView().isComposing();
    return !owner_.isHeld() && !window_.model().isBusy() && !window_.treeEditor().editing() && !isComposing &&
           !QApplication::activePopupWidget() && QApplication::mouseButtons() == Qt::NoButton;
}

bool FileFollower::hasDialog() const {
    const auto dialogs = window_.findChildren<QDialog*>(Qt::FindDirectChildrenOnly);
    return std::ranges::any_of(dialogs, [this](const QDialog* dialog) {
        return dialog->isVisible() && dialog != question_ && dialog != notice_;
    });
}

/// Whether the file was like that a while ago; if not, it is looked at again after a while.
bool FileFollower::isConfirmed(const Sight& sight) {
    if (doubted_ == sight)
        return !confirmationCall_;
    doubted_ = sight;
    confirmationCall_ = clock_.callAfter(confirmation, [this] {
        confirmationCall_.reset();
        check();
    });
    return false;
}

// A file that holds something else.

void FileFollower::followChange(const FileStamp& stamp) {
    if (isUnedited()) {
        if (told_ == Sight{stamp})
            return;
        if (!canBeTouched())
            return checkAfter(retryDelay);
        return startReload(Cause::outside, stamp);
    }
    if (accepted_ == stamp || left_ == stamp || told_ == Sight{stamp})
        return;
    if (question_) {
        asked_ = stamp;
        return;
    }
    if (!canBeTouched() || hasDialog())
        return checkAfter(retryDelay);
    ask(stamp, OutsideChangeOccasion::noticed);
}

void FileFollower::startReload(Cause cause, const FileStamp& stamp) {
    if (cause == Cause::user)
        window_.setEditingLocked(true);
    reload_ = std::make_unique<DocumentReload>(window_, *window_.document().configuration().fileLocation(),
                                               [this, cause, stamp](std::expected<ReloadedDocument, FileError> result) {
                                                   finishReload(cause, stamp, std::move(result));
                                               });
    reloadCause_ = cause;
}

void FileFollower::cancelReload() {
    if (!std::exchange(reload_, nullptr))
        return;
    if (reloadCause_ == Cause::user)
        window_.setEditingLocked(false);
}

void FileFollower::finishReload(Cause cause, const FileStamp& stamp,
                                std::expected<ReloadedDocument, FileError> result) {
    cancelReload();
    if (cause == Cause::user) {
        if (result)
            install(*std::move(result));
        else
            showAlert(&window_, tr("No se pudo volver a leer «%1».").arg(name()), result.error().message);
        return resume();
    }
    // The user may have begun to edit, or to do something else, while the file was read.
    const bool isWanted = isUnedited() && canBeTouched();
    if (!isWanted)
        return isUnedited() ? checkAfter(retryDelay) : check();
    if (!result) {
        followFailure(stamp, result.error());
    } else {
        // An editor that writes a file piece by piece must not throw the tree out of its window.
        const bool isTreeLost = window_.document().mode() == EditorMode::tree && !result->document.content.tree;
        if (!isTreeLost || isConfirmed(Sight{result->document.state.stamp}))
            install(*std::move(result));
    }
    resume();
}

void FileFollower::install(ReloadedDocument reloaded) {
    std::move(reloaded).install(window_);
    settle();
    Q_EMIT didReload();
}

void FileFollower::followFailure(const FileStamp& stamp, const FileError& error) {
    if (error.isCancellation || !isConfirmed(Sight{stamp}))
        return;
    if (hasDialog())
        return checkAfter(retryDelay);
    tell(Sight{stamp}, tr("\"%1\" ha cambiado en el disco y no se puede leer.").arg(name()),
         error.message + u'\n' +
             tr("Aquí sigue lo que contenía antes. Si lo guardas, ocupará el lugar de lo que hay ahora."));
}

// A file that is gone.

void FileFollower::followLoss() {
    if (told_ == Sight{} || !isConfirmed(Sight{}))
        return;
    if (!canBeTouched() || hasDialog())
        return checkAfter(retryDelay);
    dismissQuestion();
    const auto& location = window_.document().configuration().fileLocation();
    const bool isFolderThere = location && QFileInfo(*location).absoluteDir().exists();
    tell(Sight{}, tr("\"%1\" ya no está en su carpeta.").arg(name()),
         isFolderThere ? tr("Se ha borrado, o tiene otro nombre o está en otro lugar. Lo que ves aquí no se ha perdido: "
                            "si guardas, el archivo se creará de nuevo.")
                       : tr("Su carpeta tampoco está. Lo que ves aquí no se ha perdido: puedes guardarlo en otro lugar "
                            "con «Guardar como…»."));
}

/// What is open is what no file holds any more.
void FileFollower::tell(const Sight& sight, const QString& message, const QString& details) {
    dismissNotice();
    told_ = sight;
    JSONDocument& document = window_.document();
    if (!document.isModified())
        cleanState_ = document.stateToken().current();
    Q_EMIT didPartFromFile();
    document.noteUnsaved();
    notice_ = showAlert(&window_, message, details);
}

void FileFollower::dismissNotice() {
    if (notice_)
        notice_->deleteLater();
    notice_ = nullptr;
}

// Saving.

std::shared_ptr<FileExpectation> FileFollower::expectation(const QString& path) const {
    const DocumentConfiguration& configuration = window_.document().configuration();
    const auto& own = configuration.fileLocation();
    if (!own || !configuration.fileState() || !leadToSameFile(*own, path))
        return nullptr;
    return std::make_shared<FileExpectation>(path, *configuration.fileState(), accepted_);
}

void FileFollower::askBeforeSaving(const FileStamp& found, std::function<void()> save) {
    // A question that was asked for another reason says nothing of saving, and one that does is still right.
    const bool isAsked = question_ && pendingSave_;
    pendingSave_ = std::move(save);
    asked_ = found;
    if (isAsked)
        return;
    if (question_)
        question_->deleteLater();
    ask(found, OutsideChangeOccasion::saving);
}

// The question.

void FileFollower::ask(const FileStamp& stamp, OutsideChangeOccasion occasion) {
    asked_ = stamp;
    Q_EMIT didPartFromFile();
    question_ = askAboutOutsideChange(window_, name(), occasion,
                                      {.reload =
                                           [this] {
                                               question_ = nullptr;
                                               pendingSave_ = nullptr;
                                               startReload(Cause::user, *asked_);
                                           },
                                       .keep = [this] { keepMine(); },
                                       .saveAs =
                                           [this] {
                                               // Closing goes on, or not, with the dialog that this opens.
                                               leaveQuestion();
                                               owner_.saveAs();
                                           },
                                       .leave = [this] { leaveQuestion(); }});
}

void FileFollower::leaveQuestion() {
    question_ = nullptr;
    pendingSave_ = nullptr;
    left_ = asked_;
}

void FileFollower::keepMine() {
    question_ = nullptr;
    accepted_ = asked_;
    // Undoing back to what the file held does not bring back what it holds now.
    window_.document().noteUnsaved();
    if (const auto save = std::exchange(pendingSave_, nullptr))
        save();
}

/// There is nothing to ask about any more: a save goes on.
void FileFollower::dismissQuestion() {
    if (question_)
        question_->deleteLater();
    question_ = nullptr;
    if (const auto save = std::exchange(pendingSave_, nullptr))
        save();
}

QString FileFollower::name() const {
    return visibleCharacters(window_.document().configuration().displayName());
}

} // namespace quelm
