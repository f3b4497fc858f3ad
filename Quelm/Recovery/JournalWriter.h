#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/JournalFile.h"
#include "FileCore/JournalRecovery.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/TextSources.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quelm {

class JournalThread;

/// Writes the journal of one document, and knows what its records may refer to. After a failure nothing is written until
/// a new journal is begun: what was written before stays. Everything runs on the journal thread, the end included,
/// except making it.
class JournalWriter : public std::enable_shared_from_this<JournalWriter> {
public:
    /// Names a journal among those that one writer began.
    using Generation = std::uint64_t;
    /// Told of the first failure of each journal.
    using Failed = std::function<void(Generation, SystemError)>;

    JournalWriter(JournalThread& thread, Failed failed, SystemCalls& calls = SystemCalls::real());

    /// Goes on with a journal that is there already; its generation is 0.
    void continueWith(JournalFile journal) { file_ = std::move(journal); }

    /// The journal holds what could be understood of that one, which is kept aside when all that was appended up to now
    /// is synchronized, and not before.
    void takePlaceOf(JournalRecovery damaged);

    /// Begins the journal `path`, in a folder that is created if need be. One that was there before goes when the new
    /// one is synchronized. Without a checksum in the base, records copy nothing of the file.
    void begin(const std::string& path, Generation generation, const journal::Base& base);

    void append(const journal::Record& record);

    /// For records that are made when they are written.
    TextSources& sources() { return sources_; }
    /// The text of the file that the base is of.
    void setFile(TextRope text) { sources_ = TextSources(std::move(text)); }

    /// A save begins of the present state, which `base` says but for the checksum; `text` is its text, if the file will
    /// hold one that is in memory.
    void beginSave(journal::Base base, TextRope text);
    /// The file is about to become that state. The record of it is synchronized afterwards, if it could be written.
    void completeSave(const ContentChecksum& checksum);
    void endSave(const journal::SaveOutcome& outcome);
    /// The file is saved, but a loss of power may bring the one before back: the records lead on from both.
    void endSaveInDoubt();

    /// Takes the journal away.
    void remove();
    /// Leaves it, to be found at the next start.
    void leave();

    /// A record could not be made.
    void fail(SystemError error);

private:
    struct Save {
        journal::Base base;
        /// What the sources are when the file is saved, and when it is not.
        TextSources after;
        TextSources before;
    };

    bool canWrite() const { return file_ && !hasFailed_; }
    void write(const journal::Record& record);
    void synchronizeSoon();
    void synchronize();
    JournalThread& thread_;
    Failed failed_;
    SystemCalls& calls_;

    std::optional<JournalFile> file_;
    Generation generation_ = 0;
    bool hasFailed_ = false;
    /// Of the time before, until it is not needed any more.
    std::optional<JournalFile> previous_;
    std::optional<JournalRecovery> damaged_;
    bool isSynchronizingPosted_ = false;

    TextSources sources_;
    std::optional<Save> save_;
    std::uint64_t recordsSinceSave_ = 0;
};

} // namespace quelm
