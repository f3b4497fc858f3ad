#include "Quelm/Application/DocumentJournals.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "TextCore/Check.h"

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
    add(window, std::move(journal), std::exchange(recovered.backup, std::nullopt));
}

void DocumentJournals::add(EditorView& window, std::unique_ptr<DocumentJournal> journal,
                           std::optional<FileBackup> backup) {
    require(!followed_.contains(&window), "a window is followed once");
    connect(journal.get(), &DocumentJournal::didFail, this, [this](const QString& message) {
        if (!std::exchange(hasFailed_, true))
            Q_EMIT didFail(message);
    });
    followed_.emplace(&window, Followed{window.sharedDocument(), std::move(journal), std::move(backup)});
}

DocumentJournals::Followed* DocumentJournals::find(EditorView& window) {
    const auto found = followed_.find(&window);
    return found == followed_.end() ? nullptr : &found->second;
}

std::function<bool(const ContentChecksum&)> DocumentJournals::willSave(EditorView& window, const QString& path) {
    Followed* followed = find(window);
    return followed ? followed->journal->willSave(path) : nullptr;
}

void DocumentJournals::didSave(EditorView& window) {
    if (Followed* followed = find(window)) {
        followed->journal->didSave();
        removeBackup(*followed);
    }
}

void DocumentJournals::didNotSave(EditorView& window) {
    if (Followed* followed = find(window))
        followed->journal->didNotSave();
}

void DocumentJournals::giveUp(EditorView* window) {
    const auto found = followed_.find(window);
    if (found == followed_.end())
        return;
    found->second.journal->discard();
    removeBackup(found->second);
    followed_.erase(found);
}

void DocumentJournals::removeBackup(Followed& followed) {
    if (const auto backup = std::exchange(followed.backup, std::nullopt))
        quelm::removeBackup(*backup);
}

void DocumentJournals::flush() {
    for (auto& [window, followed] : followed_)
        followed.journal->flush();
}

} // namespace quelm
