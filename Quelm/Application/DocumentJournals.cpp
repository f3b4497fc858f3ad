#include "Quelm/Application/DocumentJournals.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "Quelm/Recovery/RecoveryStart.h"
#include "TextCore/Check.h"

#include <QFile>

#include <utility>

namespace quelm {

DocumentJournals::DocumentJournals(QString folder, QObject* parent) : QObject(parent), folder_(std::move(folder)) {}

DocumentJournals::~DocumentJournals() = default;

void DocumentJournals::follow(EditorView& window) {
    add(window, std::make_unique<DocumentJournal>(window.document(), folder_, thread_), std::nullopt);
}

void DocumentJournals::follow(EditorView& window, RecoveredDocument& recovered) {
    std::unique_ptr<DocumentJournal> journal;
    if (recovered.journal)
        journal = std::make_unique<DocumentJournal>(window.document(), folder_, thread_, *std::move(recovered.journal),
                                                    recovered.numbers);
    else
        journal = std::make_unique<DocumentJournal>(window.document(), folder_, thread_);
    recovered.journal.reset();
    if (auto damaged = std::exchange(recovered.damagedJournal, std::nullopt))
        journal->takePlaceOf(*std::move(damaged));
    add(window, std::move(journal), std::exchange(recovered.backup, std::nullopt));
}

void DocumentJournals::add(EditorView& window, std::unique_ptr<DocumentJournal> journal,
                           std::optional<FileBackup> backup) {
    require(!followed_.contains(&window), "a window is followed once");
    connect(journal.get(), &DocumentJournal::didFail, this, &DocumentJournals::didFail);
    auto recovered = std::make_shared<RecoveredBackup>(std::move(backup));
    followed_.emplace(&window, Followed{window.sharedDocument(), std::move(journal), std::move(recovered)});
}

DocumentJournals::Followed* DocumentJournals::find(EditorView& window) {
    const auto found = followed_.find(&window);
    return found == followed_.end() ? nullptr : &found->second;
}

std::function<bool(const ContentChecksum&)> DocumentJournals::willSave(EditorView& window, const QString& path) {
    Followed* followed = find(window);
    return followed ? followed->journal->willSave(path) : nullptr;
}

void DocumentJournals::didSave(EditorView& window, const QString& path) {
    Followed* followed = find(window);
    if (!followed)
        return;
    followed->journal->didSave();
    // What was saved elsewhere leaves the file that the backup is of as it was.
    thread_.post([backup = followed->backup, path = QFile::encodeName(path).toStdString()] {
        if (!backup->held || !isBackupOf(*backup->held, path))
            return;
        removeBackup(*backup->held);
        backup->held.reset();
    });
}

void DocumentJournals::didSaveInDoubt(EditorView& window) {
    if (Followed* followed = find(window))
        followed->journal->didSaveInDoubt();
}

void DocumentJournals::didNotSave(EditorView& window) {
    if (Followed* followed = find(window))
        followed->journal->didNotSave();
}

void DocumentJournals::standAlone(EditorView& window) {
    if (Followed* followed = find(window))
        followed->journal->standAlone();
}

void DocumentJournals::giveUp(EditorView* window) {
    const auto found = followed_.find(window);
    if (found == followed_.end())
        return;
    found->second.journal->discard();
    // It may be all that there is of a file.
    thread_.post([backup = found->second.backup] {
        if (backup->held)
            (void)keepBackupAside(*backup->held);
        backup->held.reset();
    });
    followed_.erase(found);
}

void DocumentJournals::flush() {
    for (auto& [window, followed] : followed_)
        followed.journal->flush();
}

} // namespace quelm
