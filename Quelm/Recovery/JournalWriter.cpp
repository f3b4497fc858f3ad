#include "Quelm/Recovery/JournalWriter.h"

#include "FileCore/PrivateFolder.h"
#include "Quelm/Recovery/JournalThread.h"

#include <cerrno>
#include <filesystem>
#include <new>
#include <utility>

namespace quelm {

JournalWriter::JournalWriter(JournalThread& thread, Failed failed, SystemCalls& calls)
    : thread_(thread), failed_(std::move(failed)), calls_(calls) {}

void JournalWriter::begin(const std::string& path, Generation generation, const journal::Base& base) {
    if (previous_) {
        // The one that the device has: the last one never got there.
        if (auto unsynchronized = std::exchange(file_, std::nullopt))
            (void)unsynchronized->remove();
    } else {
        previous_ = std::exchange(file_, std::nullopt);
    }
    // Whoever recovers from a base without a checksum has no file to copy from.
    if (!base.checksum) {
        sources_ = TextSources();
        if (save_)
            save_->before = TextSources();
    }
    generation_ = generation;
    hasFailed_ = false;
    recordsSinceSave_ = 0;
    if (const auto made = createPrivateFolder(std::filesystem::path(path).parent_path().string(), calls_); !made)
        return fail(made.error());
    auto file = JournalFile::create(path, calls_);
    if (!file)
        return fail(file.error());
    file_ = *std::move(file);
    write(base);
    if (!save_)
        return;
    // The state of the save is that of the base, in the editor that there is by now.
    save_->base.mode = base.mode;
    save_->base.recordsSince = 0;
    if (save_->base.checksum)
        write(save_->base);
}

void JournalWriter::takePlaceOf(JournalRecovery damaged) {
    damaged_ = std::move(damaged);
    synchronize();
}

void JournalWriter::append(const journal::Record& record) {
    ++recordsSinceSave_;
    write(record);
}

void JournalWriter::beginSave(journal::Base base, TextRope text) {
    // What the file holds will soon be something else: nothing of it is referred to until that is known.
    save_ = Save{.base = std::move(base),
                 .after = TextSources(std::move(text)),
                 .before = std::exchange(sources_, TextSources())};
    recordsSinceSave_ = 0;
}

void JournalWriter::completeSave(const ContentChecksum& checksum) {
    if (!save_)
        return;
    save_->base.checksum = checksum;
    save_->base.recordsSince = recordsSinceSave_;
    write(save_->base);
    synchronize();
}

void JournalWriter::endSave(const journal::SaveOutcome& outcome) {
    if (!save_)
        return;
    Save save = *std::exchange(save_, std::nullopt);
    sources_ = std::move(outcome.isSaved ? save.after : save.before);
    if (save.base.checksum)
        write(outcome);
}

void JournalWriter::endSaveInDoubt() {
    if (!save_)
        return;
    // No outcome is told: both bases count, and what follows must hold from each of them.
    save_.reset();
    sources_ = TextSources();
}

void JournalWriter::remove() {
    if (auto damaged = std::exchange(damaged_, std::nullopt))
        (void)std::move(*damaged).keepAside();
    // What cannot be removed is found at the next start, and told to be of no use by its checksum or by its last record.
    for (std::optional<JournalFile>* journal : {&previous_, &file_})
        if (auto taken = std::exchange(*journal, std::nullopt))
            (void)taken->remove();
    hasFailed_ = false;
}

void JournalWriter::leave() {
    synchronize();
    file_.reset();
    hasFailed_ = false;
}

void JournalWriter::write(const journal::Record& record) {
    if (!canWrite())
        return;
    try {
        const std::string bytes = journal::encode(record);
        if (bytes.size() > JournalFile::longestRecord)
            return fail(SystemError{EFBIG});
        if (const auto appended = file_->append(bytes); !appended)
            return fail(appended.error());
    } catch (const std::bad_alloc&) {
        return fail(SystemError{ENOMEM});
    }
    synchronizeSoon();
}

void JournalWriter::synchronizeSoon() {
    if (std::exchange(isSynchronizingPosted_, true))
        return;
    thread_.postSynchronizing([writer = shared_from_this()] {
        writer->isSynchronizingPosted_ = false;
        writer->synchronize();
    });
}

void JournalWriter::synchronize() {
    if (!canWrite())
        return;
    if (const auto synchronized = file_->synchronize(); !synchronized)
        return fail(synchronized.error());
    if (auto previous = std::exchange(previous_, std::nullopt))
        (void)previous->remove();
    if (auto damaged = std::exchange(damaged_, std::nullopt))
        (void)std::move(*damaged).keepAside();
}

void JournalWriter::fail(SystemError error) {
    hasFailed_ = true;
    failed_(generation_, error);
}

} // namespace quelm
