#pragma once

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Recovery/DetachedNumbers.h"
#include "Quelm/Recovery/DocumentJournal.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/JournalWriter.h"
#include "Quelm/Recovery/TreeEditRecording.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_set>

namespace quelm {

/// By which the journal thread tells of failures for as long as there is somebody to tell.
struct JournalFailureReceiver {
    std::mutex mutex;
    DocumentJournal* journal = nullptr;
};

/// What the main thread knows of the journal: what it may refer to, and what is to be written before the next record.
/// The records themselves are made, and written, on the journal thread, in the order in which they are posted.
///
/// Invariants:
/// 1. While it is open and has not failed, what was posted to the writer leads from its base to the document's state, but
///    for `pendingWhole`.
/// 2. While it is closed, the document is in the state that its file holds, as far as is recorded, unless it
///    `mustBeginWhole`.
struct DocumentJournal::Implementation {
    enum class State : std::uint8_t {
        /// There is no file.
        closed,
        open,
        /// There may be one, which is not continued: the next one begins after a save, or after a while.
        failed,
    };
    /// A save that is under way, with what later records may refer to again if the file is not saved.
    struct Save {
        bool isChangedSince = false;
        std::unordered_set<std::int64_t> keptContents;
        DetachedNumbers::Numbers detachedNumbers;
        std::optional<JSONContent> pendingWhole;
    };

    Implementation(DocumentJournal& journal, JSONDocument& document, QString folder, JournalThread& thread,
                   const JournalNumbers& numbers, Clock& clock);
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;
    ~Implementation();

    /// Begins if need be, with everything that a record of a change to the content of now stands on. Whether that is
    /// to be recorded: it is not when it was recorded already with the whole document, `now()`, or cannot be.
    bool prepareChange(const std::function<JSONContent()>& now);
    /// What is to be told before a change of the content, which is not one of its text.
    void postPendingWhole();

    void begin(std::optional<ContentChecksum> checksum);
    /// Begins a new journal with the document as it is.
    void beginWhole(JSONContent content);
    void postWhole(std::int64_t numberBefore, std::int64_t number, JSONContent content);
    void post(journal::Record record);
    void postWork(std::function<void(JournalWriter&)> work) { postWork(thread, writer, std::move(work)); }
    /// Memory that is lacking for it is a failure of the writer.
    static void postWork(JournalThread& thread, const std::shared_ptr<JournalWriter>& writer,
                         std::function<void(JournalWriter&)> work);
    void removeFile();
    /// The file stays for the next start, which tells whether it is needed.
    void leaveFile();
    void noteClosed();
    void forgetReferences();
    /// The document is in the state of its file.
    void startFromFile();

    /// The content with what the text editor has not handed over yet.
    JSONContent content() const;
    std::optional<TextRope> text() const;
    journal::Base base(std::optional<QString> path) const;
    /// Of what the file holds, if the document was made from that.
    std::optional<ContentChecksum> checksumOfFile() const;
    /// The number of the document's content in the journal.
    std::int64_t number(std::int64_t content) const { return content + contentOffset; }
    std::int64_t number() const { return number(document.contentNumber()); }

    /// Puts down that all changes are undone, if that is so.
    void tellUnmodified();
    /// The document is recorded whole if it is modified otherwise than by changes that were told of.
    void recordUntold();
    void noteFailure(JournalWriter::Generation failed, SystemError error);
    QString failureMessage(SystemError error) const;

    DocumentJournal& journal;
    JSONDocument& document;
    const QString folder;
    JournalThread& thread;
    Clock& clock;
    const std::shared_ptr<JournalFailureReceiver> receiver = std::make_shared<JournalFailureReceiver>();
    std::shared_ptr<JournalWriter> writer;

    State state = State::closed;
    JournalWriter::Generation generation = 0;
    bool hasToldFailure = false;
    /// Until a failed journal may be tried again.
    DelayedCall retryCall;
    bool mayRetry = false;
    /// What the last record says.
    bool saysModified = false;
    /// Of the document when it was last as its file is.
    JSONStyle styleOfFile = document.content().style;
    /// Changes so far are not recorded: the next one begins with the whole document.
    bool mustBeginWhole = false;
    /// What the file holds is of no use to whoever recovers.
    bool isFileOfNoUse = false;
    /// After a loss of power the file may be the one before the last save; and whether there were changes since that.
    bool isFileInDoubt = false;
    bool isChangedSinceDoubt = false;

    const std::int64_t contentOffset;
    /// The contents that a record can return to.
    std::unordered_set<std::int64_t> keptContents;
    DetachedNumbers detachedNumbers;
    TreeEditRecording treeEdits{detachedNumbers};
    /// The content, unchanged since, when its file says less than it: the members of a tree stand there in another order.
    std::optional<JSONContent> pendingWhole;
    std::optional<Save> save;
};

} // namespace quelm
