#include "Quelm/Recovery/DocumentJournal.h"

#include "Quelm/Foundation/Disposal.h"
#include "Quelm/Recovery/DocumentJournal+Implementation.h"
#include "Quelm/Recovery/JournalThread.h"
#include "TextCore/Check.h"

#include <QTimer>

#include <future>
#include <utility>

namespace quelm {

DocumentJournal::DocumentJournal(JSONDocument& document, QString folder, JournalThread& thread, Clock& clock)
    : implementation_(
          std::make_unique<Implementation>(*this, document, std::move(folder), thread, JournalNumbers(), clock)) {
    implementation_->startFromFile();
    document.setRecorder(this);
}

DocumentJournal::DocumentJournal(JSONDocument& document, QString folder, JournalThread& thread, JournalFile journal,
                                 const JournalNumbers& numbers, Clock& clock)
    : implementation_(std::make_unique<Implementation>(*this, document, std::move(folder), thread, numbers, clock)) {
    implementation_->state = Implementation::State::open;
    implementation_->saysModified = true;
    // Shared only because work that is posted can be copied.
    implementation_->postWork([file = std::make_shared<JournalFile>(std::move(journal))](JournalWriter& writer) {
        writer.continueWith(std::move(*file));
    });
    document.setRecorder(this);
}

DocumentJournal::~DocumentJournal() {
    implementation_->document.setRecorder(nullptr);
}

// Changes.

void DocumentJournal::didEditText(const TextRope& before, const TextRope& after, std::int64_t location,
                                  std::int64_t removed, std::int64_t inserted) {
    Implementation& own = *implementation_;
    const auto now = [&] {
        return JSONContent{.text = after,
                           .tree = std::nullopt,
                           .parseError = std::nullopt,
                           .style = own.document.content().style};
    };
    // The tree is gone, with its nodes and their order.
    own.detachedNumbers.forgetContent(own.document.contentNumber());
    disposeInBackground(std::exchange(own.pendingWhole, std::nullopt));
    if (!own.prepareChange(now))
        return;
    own.postWork([old = before.slice({location, removed}), text = after.slice({location, inserted}),
                  location](JournalWriter& writer) {
        writer.append(journal::EditText{.location = location,
                                        .removed = old.byteCount(),
                                        .inserted = writer.sources().describe(text, old)});
    });
}

void DocumentJournal::willEditTree(const JSONTree& tree, const TreeEdit& edit) {
    if (implementation_->state != Implementation::State::failed && !implementation_->mustBeginWhole)
        implementation_->treeEdits.add(tree, edit, implementation_->document.contentNumber());
}

void DocumentJournal::didEditTree(const JSONTree& tree) {
    Implementation& own = *implementation_;
    const auto now = [&] {
        return JSONContent{.text = std::nullopt,
                           .tree = tree,
                           .parseError = std::nullopt,
                           .style = own.document.content().style};
    };
    std::vector<PendingNodeEdit> edits = own.treeEdits.take();
    if (!own.prepareChange(now))
        return;
    own.postPendingWhole();
    own.postWork([edits = std::move(edits)](JournalWriter& writer) { writer.append(encodedEdits(edits)); });
}

void DocumentJournal::didFailToEditTree() {
    implementation_->treeEdits.drop();
}

void DocumentJournal::didReplaceContent(const ContentReplacement& replacement, const JSONContent& content) {
    Implementation& own = *implementation_;
    if (!own.prepareChange([&] { return content; }))
        return;
    const std::int64_t before = own.number(replacement.numberBefore);
    const std::int64_t number = own.number(replacement.number);
    if (auto whole = std::exchange(own.pendingWhole, std::nullopt))
        own.postWhole(before, before, *std::move(whole));
    const bool isKept = own.keptContents.contains(replacement.number);
    own.keptContents.insert(replacement.numberBefore);
    if (replacement.origin == ContentOrigin::reformatting)
        return own.post(journal::Reformat{.numberBefore = before, .number = number, .style = content.style});
    if (replacement.isReturn && isKept)
        return own.post(journal::Return{.numberBefore = before, .number = number});
    own.detachedNumbers.forgetContent(replacement.number);
    own.postWhole(before, number, content);
}

void DocumentJournal::didChangeMode(EditorMode mode, const JSONContent& content) {
    if (implementation_->pendingWhole)
        implementation_->pendingWhole = content;
    if (implementation_->state == Implementation::State::open)
        implementation_->post(journal::ChangeMode{mode});
}

void DocumentJournal::didChangeModified(bool isModified) {
    if (!isModified)
        return implementation_->tellUnmodified();
    // Without a change, the file does not hold the state any more. Later, since a content that is being installed is not
    // there yet, and begins anew itself.
    if (!implementation_->saysModified || implementation_->mustBeginWhole)
        QTimer::singleShot(0, this, [this] { implementation_->recordUntold(); });
}

void DocumentJournal::didApply() {
    implementation_->postWork([](JournalWriter& writer) { writer.endSave({.isSaved = false}); });
    implementation_->save.reset();
    implementation_->startFromFile();
}

// Saving.

std::function<bool(const ContentChecksum&)> DocumentJournal::willSave(const QString& path) {
    Implementation& own = *implementation_;
    require(!own.save, "a document is saved once at a time");
    own.save = Implementation::Save{.isChangedSince = false,
                                    .keptContents = std::exchange(own.keptContents, {}),
                                    .detachedNumbers = own.detachedNumbers.takeAll(),
                                    .pendingWhole = own.pendingWhole};
    const JSONContent content = own.content();
    own.pendingWhole.reset();
    if (content.tree && content.style.sortsKeys())
        own.pendingWhole = content;
    own.postWork([base = own.base(path), text = content.text.value_or(TextRope())](JournalWriter& writer) {
        writer.beginSave(base, text);
    });
    return [writer = own.writer, thread = &own.thread](const ContentChecksum& checksum) {
        auto written = std::make_shared<std::promise<void>>();
        Implementation::postWork(*thread, writer, [checksum](JournalWriter& each) { each.completeSave(checksum); });
        thread->post([written] { written->set_value(); });
        written->get_future().wait();
        return true;
    };
}

void DocumentJournal::didSave() {
    Implementation& own = *implementation_;
    // A document that was read anew meanwhile is not the one that was saved.
    if (!own.save)
        return;
    own.postWork([](JournalWriter& writer) { writer.endSave({.isSaved = true}); });
    Implementation::Save save = *std::exchange(own.save, std::nullopt);
    disposeInBackground(std::move(save.pendingWhole));
    own.isFileOfNoUse = false;
    own.isFileInDoubt = false;
    if (!save.isChangedSince) {
        // The state of the file, from which the next change begins.
        own.mustBeginWhole = false;
        auto pending = std::exchange(own.pendingWhole, std::nullopt);
        own.removeFile();
        own.pendingWhole = std::move(pending);
    } else if (own.state == Implementation::State::failed) {
        own.removeFile();
        own.beginWhole(own.content());
    }
    // Once the document knows what was saved.
    QTimer::singleShot(0, this, [this] { implementation_->tellUnmodified(); });
}

void DocumentJournal::didSaveInDoubt() {
    Implementation& own = *implementation_;
    // Where there is no journal, the file before the save held all that there was to recover.
    if (!own.save || own.state != Implementation::State::open)
        return didSave();
    own.postWork([](JournalWriter& writer) { writer.endSaveInDoubt(); });
    Implementation::Save save = *std::exchange(own.save, std::nullopt);
    disposeInBackground(std::move(save.pendingWhole));
    own.isFileOfNoUse = false;
    own.isFileInDoubt = true;
    own.saysModified = true;
    own.isChangedSinceDoubt = save.isChangedSince;
}

void DocumentJournal::didNotSave() {
    Implementation& own = *implementation_;
    if (!own.save)
        return;
    own.postWork([](JournalWriter& writer) { writer.endSave({.isSaved = false}); });
    Implementation::Save save = *std::exchange(own.save, std::nullopt);
    own.keptContents.merge(save.keptContents);
    own.detachedNumbers.restore(std::move(save.detachedNumbers));
    if (!save.isChangedSince)
        own.pendingWhole.swap(save.pendingWhole);
    disposeInBackground(std::move(save.pendingWhole));
    own.tellUnmodified();
}

void DocumentJournal::takePlaceOf(JournalRecovery damaged) {
    // Shared only because work that is posted can be copied.
    implementation_->postWork([shared = std::make_shared<JournalRecovery>(std::move(damaged))](JournalWriter& writer) {
        writer.takePlaceOf(std::move(*shared));
    });
}

void DocumentJournal::discard() {
    if (implementation_->isFileInDoubt && !implementation_->isChangedSinceDoubt)
        implementation_->leaveFile();
    else
        implementation_->removeFile();
    implementation_->mustBeginWhole = implementation_->document.isModified();
}

void DocumentJournal::standAlone() {
    Implementation& own = *implementation_;
    own.isFileOfNoUse = true;
    if (own.document.isModified())
        own.beginWhole(own.content());
    else
        own.mustBeginWhole = true;
}

void DocumentJournal::flush() {
    implementation_->thread.wait();
}

} // namespace quelm
