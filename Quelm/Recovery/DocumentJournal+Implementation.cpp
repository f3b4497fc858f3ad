#include "Quelm/Recovery/DocumentJournal+Implementation.h"

#include "Quelm/Foundation/Disposal.h"
#include "Quelm/Recovery/JournalThread.h"
#include "Quelm/Recovery/WholeContent.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

namespace quelm {

DocumentJournal::Implementation::Implementation(DocumentJournal& journal, JSONDocument& document, QString folder,
                                                JournalThread& thread, const JournalNumbers& numbers, Clock& clock)
    : journal(journal), document(document), folder(std::move(folder)), thread(thread), clock(clock),
      contentOffset(std::max<std::int64_t>(0, numbers.nextContent - document.contentNumber())),
      detachedNumbers(numbers.nextDetached) {
    receiver->journal = &journal;
    writer = std::make_shared<JournalWriter>(
        thread, [receiver = receiver, this](JournalWriter::Generation generation, SystemError error) {
            const std::lock_guard lock(receiver->mutex);
            if (receiver->journal)
                QMetaObject::invokeMethod(
                    receiver->journal, [this, generation, error] { noteFailure(generation, error); },
                    Qt::QueuedConnection);
        });
}

DocumentJournal::Implementation::~Implementation() {
    {
        const std::lock_guard lock(receiver->mutex);
        receiver->journal = nullptr;
    }
    if (state == State::open && !saysModified && !save)
        removeFile();
    disposeInBackground(std::move(pendingWhole));
    if (save)
        disposeInBackground(std::move(save->pendingWhole));
    // It ends where it worked, after all that was posted.
    thread.post([last = std::move(writer)] {});
}

bool DocumentJournal::Implementation::prepareChange(const std::function<JSONContent()>& now) {
    if (save)
        save->isChangedSince = true;
    isChangedSinceDoubt = true;
    if (state == State::failed && !mayRetry)
        return false;
    if (mustBeginWhole || state == State::failed) {
        beginWhole(now());
        return false;
    }
    if (state == State::closed)
        begin(checksumOfFile());
    saysModified = true;
    return true;
}

void DocumentJournal::Implementation::begin(std::optional<ContentChecksum> checksum) {
    state = State::open;
    retryCall.reset();
    mayRetry = false;
    journal::Base base = this->base(document.configuration().fileLocation());
    base.checksum = checksum;
    // The first change may be one of the style.
    base.style = styleOfFile;
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces) + QStringLiteral(".journal");
    postWork([path = QFile::encodeName(QDir(folder).filePath(name)).toStdString(), generation = ++generation,
              base = std::move(base)](JournalWriter& writer) { writer.begin(path, generation, base); });
}

void DocumentJournal::Implementation::beginWhole(JSONContent content) {
    mustBeginWhole = false;
    // Its only base is a file that may be another one after a loss of power.
    isFileOfNoUse = isFileOfNoUse || isFileInDoubt;
    isFileInDoubt = false;
    forgetReferences();
    begin(isFileOfNoUse ? std::nullopt : checksumOfFile());
    postWhole(number(), number(), std::move(content));
    saysModified = true;
}

void DocumentJournal::Implementation::postPendingWhole() {
    if (auto content = std::exchange(pendingWhole, std::nullopt))
        postWhole(number(), number(), *std::move(content));
}

void DocumentJournal::Implementation::postWhole(std::int64_t numberBefore, std::int64_t number, JSONContent content) {
    postWork([numberBefore, number, content = std::move(content)](JournalWriter& writer) {
        writer.append(wholeContent(content, numberBefore, number, writer.sources()));
    });
}

void DocumentJournal::Implementation::post(journal::Record record) {
    postWork([record = std::move(record)](JournalWriter& writer) { writer.append(record); });
}

void DocumentJournal::Implementation::postWork(JournalThread& thread, const std::shared_ptr<JournalWriter>& writer,
                                               std::function<void(JournalWriter&)> work) {
    thread.post([writer, work = std::move(work)] {
        try {
            work(*writer);
        } catch (const std::bad_alloc&) {
            writer->fail(SystemError{ENOMEM});
        }
    });
}

void DocumentJournal::Implementation::removeFile() {
    postWork([](JournalWriter& writer) { writer.remove(); });
    noteClosed();
}

void DocumentJournal::Implementation::leaveFile() {
    postWork([](JournalWriter& writer) { writer.leave(); });
    noteClosed();
}

void DocumentJournal::Implementation::noteClosed() {
    state = State::closed;
    isFileInDoubt = false;
    saysModified = false;
    styleOfFile = document.content().style;
    forgetReferences();
}

/// The contents and nodes that a journal of before knew.
void DocumentJournal::Implementation::forgetReferences() {
    keptContents.clear();
    detachedNumbers.forgetAll();
    disposeInBackground(std::exchange(pendingWhole, std::nullopt));
}

void DocumentJournal::Implementation::startFromFile() {
    removeFile();
    mustBeginWhole = false;
    isFileOfNoUse = false;
    // What is modified is not what the file holds.
    const bool isText = checksumOfFile() && !document.isModified();
    postWork([text = isText ? text().value_or(TextRope()) : TextRope()](JournalWriter& writer) {
        writer.setFile(text);
    });
    if (document.isModified())
        beginWhole(content());
}

JSONContent DocumentJournal::Implementation::content() const {
    if (!document.isTextBufferEdited())
        return document.content();
    return {.text = text(), .tree = std::nullopt, .parseError = std::nullopt, .style = document.content().style};
}

std::optional<TextRope> DocumentJournal::Implementation::text() const {
    return document.isTextBufferEdited() ? document.textBuffer()->text() : document.content().text;
}

journal::Base DocumentJournal::Implementation::base(std::optional<QString> path) const {
    journal::Base base{.path = std::nullopt,
                       .checksum = std::nullopt,
                       .mode = document.mode(),
                       .style = document.content().style,
                       .recordsSince = 0};
    if (path)
        base.path = QFileInfo(*path).absoluteFilePath().toStdString();
    return base;
}

std::optional<ContentChecksum> DocumentJournal::Implementation::checksumOfFile() const {
    const auto& file = document.configuration().fileState();
    return file && file->isKnown() ? std::optional(file->checksum) : std::nullopt;
}

void DocumentJournal::Implementation::tellUnmodified() {
    // While it is being saved, or the save is in doubt, nobody knows what the file holds.
    if (state != State::open || save || isFileInDoubt || !saysModified || document.isModified())
        return;
    saysModified = false;
    post(journal::Modified{false});
}

void DocumentJournal::Implementation::recordUntold() {
    if (state == State::failed || (saysModified && !mustBeginWhole) || !document.isModified())
        return;
    isFileOfNoUse = true;
    beginWhole(content());
}

void DocumentJournal::Implementation::noteFailure(JournalWriter::Generation failed, SystemError error) {
    if (failed != generation || state != State::open)
        return;
    state = State::failed;
    retryCall = clock.callAfter(retryDelay, [this] { mayRetry = true; });
    if (!std::exchange(hasToldFailure, true))
        Q_EMIT journal.didFail(failureMessage(error));
}

QString DocumentJournal::Implementation::failureMessage(SystemError error) const {
    return tr("Los cambios de “%1” no se pueden anotar para recuperarlos si Quelm se cerrara inesperadamente: %2. El "
              "documento sigue intacto. Guárdalo para no perder los cambios.")
        .arg(document.configuration().displayName(), QString::fromStdString(error.description()));
}

} // namespace quelm
